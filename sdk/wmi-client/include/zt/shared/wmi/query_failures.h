#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "zt/zt_wmi_client_export.h"

namespace zt::shared::wmi {

/// Called with the text and the HRESULT of every query that failed, in all clients of the process: for diagnosis, since
/// not every reader tells a failed query from one without rows. An empty function ends it. For the host, between
/// collections.
ZT_WMI_CLIENT_EXPORT void ObserveFailures(std::function<void(const std::wstring& wql, std::int32_t status)> observer);

}  // namespace zt::shared::wmi
