#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace zt::shared::battery {

/// Devices that offer an interface.
struct DeviceInterfaces {
  std::vector<std::wstring> paths;  // in the system's order; of those that tell theirs
  DWORD error = ERROR_SUCCESS;      // the system's code when it does not list them
};

/// The devices present that offer the interface `interface_class`.
DeviceInterfaces ListDeviceInterfaces(const GUID& interface_class);

}  // namespace zt::shared::battery
