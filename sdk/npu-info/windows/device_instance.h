#pragma once

#include <windows.h>

#include <string>

namespace zt::shared::npu {

/// The instance identifier of the device that the adapter `luid` is, as "PCI\VEN_8086&DEV_7D1D&...\3&11583659&0&58"
/// (UTF-8): the same after each start of the system, other than the LUID. Empty when no device has the adapter.
std::string FindDeviceInstance(const LUID& luid);

}  // namespace zt::shared::npu
