#include "windows/disk_device.h"

#include <winioctl.h>

#include <algorithm>
#include <span>
#include <string>

#include "disk_answer.h"

namespace zt::shared::storage {
namespace {

// The compilers' headers differ in the properties that they know.
struct PropertyQuery {
  DiskProperty property;
  std::uint32_t query_type = 0;  // the property itself
  std::uint32_t additional_parameters = 0;
};

// Returns how many bytes of the answer came; 0 on failure.
std::size_t Ask(HANDLE disk, DiskProperty property, std::span<std::uint8_t> answer) {
  PropertyQuery query{property};
  DWORD received = 0;
  const BOOL succeeded = ::DeviceIoControl(disk, IOCTL_STORAGE_QUERY_PROPERTY, &query, sizeof(query), answer.data(),
                                           static_cast<DWORD>(answer.size()), &received, nullptr);
  return succeeded != FALSE ? std::min<std::size_t>(received, answer.size()) : 0;
}

}  // namespace

DiskDevice::DiskDevice(unsigned number)
    : handle_(base::OwnFile(::CreateFileW((LR"(\\.\PhysicalDrive)" + std::to_wstring(number)).c_str(), 0,
                                          FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr))) {}

std::vector<std::uint8_t> DiskDevice::Read(DiskProperty property) const {
  if (!IsOpen()) return {};
  return ReadWholeAnswer([&](std::span<std::uint8_t> answer) { return Ask(handle_.get(), property, answer); });
}

}  // namespace zt::shared::storage
