#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace zt::shared::battery {

/// The paths of the devices present that offer the interface `interface_class`, in the system's order. Empty when there
/// are none and when the system does not list them.
std::vector<std::wstring> DeviceInterfacePaths(const GUID& interface_class);

}  // namespace zt::shared::battery
