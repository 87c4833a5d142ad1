#include "windows/disk_device.h"

#include <winioctl.h>

#include <algorithm>
#include <span>
#include <string>

namespace zt::shared::storage {
namespace {

// The compilers' headers differ in the properties that they know.
struct PropertyQuery {
  DiskProperty property;
  std::uint32_t query_type = 0;  // the property itself
  std::uint32_t additional_parameters = 0;
};

// Begins every answer.
struct AnswerHeader {
  std::uint32_t version = 0;
  std::uint32_t size = 0;
};

constexpr std::uint32_t kMaximumAnswer = 64 * 1024;

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
    : handle_(::CreateFileW((LR"(\\.\PhysicalDrive)" + std::to_wstring(number)).c_str(), 0,
                            FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr)) {}

DiskDevice::~DiskDevice() {
  if (IsOpen()) ::CloseHandle(handle_);
}

std::vector<std::uint8_t> DiskDevice::Read(DiskProperty property) const {
  if (!IsOpen()) return {};
  AnswerHeader header;
  const std::span<std::uint8_t> header_bytes(reinterpret_cast<std::uint8_t*>(&header), sizeof(header));
  if (Ask(handle_, property, header_bytes) < sizeof(header)) return {};
  std::vector<std::uint8_t> answer(std::min(header.size, kMaximumAnswer));
  answer.resize(Ask(handle_, property, answer));
  return answer;
}

}  // namespace zt::shared::storage
