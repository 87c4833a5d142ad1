#pragma once

#include <wbemidl.h>

#include <functional>
#include <optional>
#include <string>

#include "base/windows/com_apartment.h"
#include "zt/com/com_handles.h"

namespace zt::com {

/// Connects to a WMI namespace of this machine. Gives up after the system's own limit of two minutes.
HRESULT ConnectToNamespace(const std::wstring& wmi_namespace, ComPtr<IWbemServices>& services);

/// Lets WMI act for the calling user on the calls made through `object`: to be done once for each interface that WMI
/// hands out, whatever the process's COM security is.
HRESULT AuthoriseCalls(IUnknown* object);

/// A connection to one WMI namespace, attempted once, when it is first needed: an attempt at a WMI that is out of order
/// takes minutes, so its failure holds for the life of the object. For one thread, on which COM is joined from then on.
class WmiConnection {
 public:
  using Connect = std::function<HRESULT(const std::wstring& wmi_namespace, ComPtr<IWbemServices>& services)>;

  explicit WmiConnection(std::wstring wmi_namespace, Connect connect = ConnectToNamespace);

  /// S_OK when `Services` can be used, else the status of the one attempt.
  HRESULT Ensure();

  /// After a successful `Ensure`.
  IWbemServices& Services() const { return *services_.Get(); }

 private:
  HRESULT Attempt();

  std::wstring namespace_;
  Connect connect_;
  std::optional<base::ComApartment> apartment_;  // before what is used under it, which goes first
  ComPtr<IWbemServices> services_;
  std::optional<HRESULT> outcome_;
};

}  // namespace zt::com
