#pragma once

#include <wbemidl.h>

#include <string>

#include "zt/com/com_handles.h"

namespace zt::com {

/// Connects to a WMI namespace of this machine. Gives up after the system's own limit of two minutes.
HRESULT ConnectToNamespace(const std::wstring& wmi_namespace, ComPtr<IWbemServices>& services);

/// Lets WMI act for the calling user on the calls made through `object`: to be done once for each interface that WMI
/// hands out, whatever the process's COM security is.
HRESULT AuthoriseCalls(IUnknown* object);

}  // namespace zt::com
