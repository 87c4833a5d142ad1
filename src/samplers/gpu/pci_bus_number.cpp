#include "samplers/gpu/pci_bus_number.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <optional>
#include <string>
#include <system_error>

#include "platform/registry.h"
#include "samplers/gpu/decimal_number.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

// One subkey for each hardware identifier, "VEN_1002&DEV_744C&SUBSYS_00000001&REV_C8", and below it one for each
// adapter.
constexpr char kAdapters[] = R"(SYSTEM\CurrentControlSet\Enum\PCI\)";
// Ends in "(bus,device,function)".
constexpr char kLocation[] = "LocationInformation";

struct PciId {
  std::uint32_t vendor = 0;
  std::uint32_t device = 0;
  bool operator==(const PciId&) const = default;
};

// Absent for what is no hexadecimal number as a whole, and for one of more than 32 bits.
std::optional<std::uint32_t> ReadHexadecimal(std::string_view text) {
  if (text.starts_with("0x") || text.starts_with("0X")) text.remove_prefix(2);
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
  const bool is_number = error == std::errc{} && end == text.data() + text.size();
  return is_number ? std::optional(number) : std::nullopt;
}

// The number behind `mark` in a hardware identifier in capitals, up to the next "&".
std::optional<std::uint32_t> ReadPart(std::string_view hardware_id, std::string_view mark) {
  const std::size_t start = hardware_id.find(mark);
  if (start == std::string_view::npos) return std::nullopt;
  const std::string_view rest = hardware_id.substr(start + mark.size());
  return ReadHexadecimal(rest.substr(0, rest.find('&')));
}

std::optional<PciId> ReadHardwareId(std::string hardware_id) {
  std::ranges::transform(hardware_id, hardware_id.begin(),
                         [](unsigned char character) { return static_cast<char>(std::toupper(character)); });
  const auto vendor = ReadPart(hardware_id, "VEN_");
  const auto device = ReadPart(hardware_id, "DEV_");
  return vendor && device ? std::optional(PciId{*vendor, *device}) : std::nullopt;
}

// Takes the leading digits off `text`.
std::string_view TakeDigits(std::string_view& text) {
  const std::string_view digits = text.substr(0, text.find_first_not_of("0123456789"));
  text.remove_prefix(digits.size());
  return digits;
}

// Takes a comma and a number off `text`; false when they do not come next.
bool TakeNext(std::string_view& text) {
  if (!text.starts_with(',')) return false;
  text.remove_prefix(1);
  return !TakeDigits(text).empty();
}

// The bus of the first "bus,device,function", three decimal numbers. Searched by hand: a regular expression would
// recurse once for each digit of a text that anything may have written.
std::optional<std::uint32_t> FindBus(std::string_view location) {
  while (!location.empty()) {
    const std::string_view bus = TakeDigits(location);
    std::string_view rest = location;
    if (!bus.empty() && TakeNext(rest) && TakeNext(rest)) return DecimalNumber(bus);
    if (bus.empty()) location.remove_prefix(1);
  }
  return std::nullopt;
}

// Of the first adapter below `key` that tells where it is.
std::optional<std::uint32_t> FindBusBelow(const std::string& key) {
  for (const std::string& instance : platform::RegistrySubkeys(key).value) {
    std::string path = key;
    path.append("\\").append(instance);
    const auto location = platform::RegistryText(path, kLocation).value;
    const auto bus = location ? FindBus(*location) : std::nullopt;
    if (bus) return bus;
  }
  return std::nullopt;
}

}  // namespace

std::uint32_t PciBusNumber(std::string_view vendor_id, std::string_view device_id) {
  const auto vendor = ReadHexadecimal(vendor_id);
  const auto device = ReadHexadecimal(device_id);
  if (!vendor || !device) return 0;
  for (const std::string& hardware_id : platform::RegistrySubkeys(kAdapters).value) {
    if (ReadHardwareId(hardware_id) != PciId{*vendor, *device}) continue;
    const auto bus = FindBusBelow(kAdapters + hardware_id);
    if (bus) return *bus;
  }
  return 0;
}

std::uint32_t PciAdaptersFailure() {
  return platform::RegistrySubkeys(kAdapters).failure;
}

}  // namespace zt::telemetry::collector::performancesamples
