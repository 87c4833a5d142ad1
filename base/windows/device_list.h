#pragma once

#include <windows.h>
#include <setupapi.h>

#include <memory>

namespace zt::base {

struct DeviceListDeleter {
  using pointer = HDEVINFO;
  void operator()(HDEVINFO devices) const { ::SetupDiDestroyDeviceInfoList(devices); }
};

/// Owns a list of devices; null is none.
using DeviceList = std::unique_ptr<void, DeviceListDeleter>;

/// Owns what `SetupDiGetClassDevs` gave, which tells of failure by INVALID_HANDLE_VALUE; null then.
inline DeviceList OwnDevices(HDEVINFO devices) {
  return DeviceList(devices != INVALID_HANDLE_VALUE ? devices : nullptr);
}

}  // namespace zt::base
