#include "disk_names.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace zt::shared::storage {
namespace {

constexpr std::wstring_view kDiskName = L"PhysicalDrive";
constexpr std::size_t kMaximumDigits = 6;

std::optional<unsigned> DiskNumber(std::wstring_view name) {
  if (!name.starts_with(kDiskName)) return std::nullopt;
  name.remove_prefix(kDiskName.size());
  if (name.empty() || name.size() > kMaximumDigits) return std::nullopt;
  unsigned number = 0;
  for (const wchar_t digit : name) {
    if (digit < L'0' || digit > L'9') return std::nullopt;
    number = number * 10 + static_cast<unsigned>(digit - L'0');
  }
  return number;
}

}  // namespace

std::vector<unsigned> FindDiskNumbers(std::wstring_view device_names) {
  std::vector<unsigned> numbers;
  while (!device_names.empty()) {
    const std::size_t length = std::min(device_names.find(L'\0'), device_names.size());
    const std::optional<unsigned> number = DiskNumber(device_names.substr(0, length));
    if (number) numbers.push_back(*number);
    device_names.remove_prefix(std::min(length + 1, device_names.size()));
  }
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

}  // namespace zt::shared::storage
