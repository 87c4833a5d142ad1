// What a disk's driver answers, and the system's list of device names.
#include "disk_answer.h"

#include <algorithm>
#include <string>
#include <vector>

#include "disk_descriptor.h"
#include "disk_names.h"
#include "harness.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zt::shared::storage;
  const std::vector<std::uint8_t> input(data, data + size);
  const std::vector<std::uint8_t> answer = ReadWholeAnswer([&](std::span<std::uint8_t> buffer) {
    std::copy_n(input.begin(), std::min(buffer.size(), input.size()), buffer.begin());
    return input.size();
  });
  const auto descriptor = ParseDiskDescriptor(answer);
  const bool has_zero = descriptor && descriptor->serial.find('\0') != std::string::npos;
  zt::fuzz::Require(!has_zero, "a serial number ends with its zero");
  zt::fuzz::Require(ParseAdapterSerial(answer).find('\0') == std::string::npos, "so does an adapter's");
  const std::wstring names(input.begin(), input.end());
  const std::vector<unsigned> numbers = FindDiskNumbers(names);
  zt::fuzz::Require(std::is_sorted(numbers.begin(), numbers.end()), "disks come by their numbers");
  return 0;
}
