#include "windows/disk_device.h"

#include <winioctl.h>

#include <cstddef>
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
std::size_t Ask(const base::ControlDevice& disk, DiskProperty property, std::span<std::uint8_t> answer) {
  const PropertyQuery query{property};
  const base::ControlOutcome outcome =
      disk(IOCTL_STORAGE_QUERY_PROPERTY, std::as_bytes(std::span(&query, 1)), std::as_writable_bytes(answer));
  return outcome.error == ERROR_SUCCESS ? outcome.size : 0;
}

}  // namespace

DiskDevice::DiskDevice(unsigned number, base::TimeLimit all)
    : handle_(base::OpenDevice(LR"(\\.\PhysicalDrive)" + std::to_wstring(number), /*access=*/0)),
      ask_(base::AskDevice(handle_.get(), kAnswerLimit, all)) {}

std::vector<std::uint8_t> DiskDevice::Read(DiskProperty property) const {
  if (!IsOpen()) return {};
  return ReadWholeAnswer([&](std::span<std::uint8_t> answer) { return Ask(ask_, property, answer); });
}

}  // namespace zt::shared::storage
