#include "device_interfaces.h"

#include <setupapi.h>

#include <cstddef>
#include <new>

#include "base/windows/device_list.h"

namespace zt::shared::battery {
namespace {

// Empty where the system does not tell the path.
std::wstring PathOf(HDEVINFO devices, SP_DEVICE_INTERFACE_DATA& device) {
  DWORD size = 0;
  ::SetupDiGetDeviceInterfaceDetailW(devices, &device, nullptr, 0, &size, nullptr);
  if (size < sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W)) return {};
  std::vector<std::byte> buffer(size);  // new gives it the alignment of any structure
  auto* const detail = new (buffer.data()) SP_DEVICE_INTERFACE_DETAIL_DATA_W{};
  detail->cbSize = sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W);
  if (::SetupDiGetDeviceInterfaceDetailW(devices, &device, detail, size, nullptr, nullptr) == FALSE) return {};
  return detail->DevicePath;
}

}  // namespace

DeviceInterfaces ListDeviceInterfaces(const GUID& interface_class) {
  const base::DeviceList devices = base::OwnDevices(
      ::SetupDiGetClassDevsW(&interface_class, nullptr, nullptr, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE));
  if (devices == nullptr) return {{}, ::GetLastError()};
  DeviceInterfaces found;
  SP_DEVICE_INTERFACE_DATA device{};
  device.cbSize = sizeof(device);
  for (DWORD i = 0; ::SetupDiEnumDeviceInterfaces(devices.get(), nullptr, &interface_class, i, &device) != FALSE; ++i) {
    std::wstring path = PathOf(devices.get(), device);
    if (!path.empty()) found.paths.push_back(std::move(path));
  }
  const DWORD end = ::GetLastError();
  if (end != ERROR_NO_MORE_ITEMS) found.error = end;
  return found;
}

}  // namespace zt::shared::battery
