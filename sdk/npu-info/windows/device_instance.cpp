#include "windows/device_instance.h"

#include <setupapi.h>
#include <zt/text/wide_text.h>

#include <array>
#include <cstdint>

#include "base/windows/device_list.h"

namespace zt::shared::npu {
namespace {

// The LUID of the adapter that a device is; a 64-bit number.
constexpr DEVPROPKEY kAdapterLuid = {{0x60B193CB, 0x5276, 0x4D0F, {0x96, 0xFC, 0xF1, 0x73, 0xAB, 0xAD, 0x3E, 0xC6}}, 2};
constexpr DEVPROPTYPE kUnsigned64 = 9;  // DEVPROP_TYPE_UINT64

constexpr std::size_t kInstanceCapacity = 256;  // the system's limit is 200

// All devices that are present, whatever their class: makers file NPUs under several.
class PresentDevices {
 public:
  PresentDevices()
      : set_(base::OwnDevices(::SetupDiGetClassDevsW(nullptr, nullptr, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES))) {}

  /// False behind the last one.
  bool Get(DWORD index, SP_DEVINFO_DATA& device) const {
    return set_ != nullptr && ::SetupDiEnumDeviceInfo(set_.get(), index, &device) != FALSE;
  }

  bool IsAdapter(SP_DEVINFO_DATA& device, std::uint64_t luid) const {
    std::uint64_t found = 0;
    DEVPROPTYPE type = 0;
    const BOOL has_luid = ::SetupDiGetDevicePropertyW(set_.get(), &device, &kAdapterLuid, &type,
                                                      reinterpret_cast<BYTE*>(&found), sizeof(found), nullptr, 0);
    return has_luid != FALSE && type == kUnsigned64 && found == luid;
  }

  std::string Instance(SP_DEVINFO_DATA& device) const {
    std::array<wchar_t, kInstanceCapacity> text{};
    const BOOL succeeded =
        ::SetupDiGetDeviceInstanceIdW(set_.get(), &device, text.data(), static_cast<DWORD>(text.size()), nullptr);
    return succeeded != FALSE ? text::ToUtf8(text.data()) : std::string();
  }

 private:
  base::DeviceList set_;
};

std::uint64_t AsNumber(const LUID& luid) {
  return std::uint64_t{static_cast<std::uint32_t>(luid.HighPart)} << 32U | luid.LowPart;
}

}  // namespace

std::string FindDeviceInstance(const LUID& luid) {
  const PresentDevices devices;
  SP_DEVINFO_DATA device{};
  device.cbSize = sizeof(device);
  for (DWORD i = 0; devices.Get(i, device); ++i) {
    if (devices.IsAdapter(device, AsNumber(luid))) return devices.Instance(device);
  }
  return {};
}

}  // namespace zt::shared::npu
