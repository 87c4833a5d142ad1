#include "system_firmware_reader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include "simulation/calls.h"
#include "simulation/machine.h"

namespace zt::shared::smbios {
namespace {

using Bytes = std::vector<std::uint8_t>;
using simulation::Disturbance;

constexpr std::array<std::uint8_t, 4> kTableHeader = {0, 2, 4, 0};  // calling method, version 2.4, revision
constexpr std::uint8_t kSystemInformation = 1;
constexpr std::uint8_t kEndOfTable = 127;
constexpr Bytes::value_type kNoText = 0;
constexpr Bytes::value_type kFirstText = 1;

void Append(Bytes& bytes, const Bytes& more) {
  bytes.insert(bytes.end(), more.begin(), more.end());
}

// The system information structure with its shortest length: manufacturer, product, version and serial number.
// An empty serial number is numbered like any other and finds an empty set of texts, as on a board whose serial number
// was wiped; a set of texts cannot hold an empty one in any other way.
Bytes SystemInformation(const std::optional<std::string>& serial_number) {
  constexpr std::uint8_t kLength = 8;
  Bytes structure = {
      kSystemInformation, kLength, 0x01, 0x00, kNoText, kNoText, kNoText, serial_number ? kFirstText : kNoText};
  // One by one: GCC 12, optimising, sees the bytes of an insertion beyond a buffer that is not theirs.
  for (const char character : serial_number.value_or(std::string())) {
    structure.push_back(static_cast<Bytes::value_type>(character));
  }
  Append(structure, {0, 0});
  return structure;
}

Bytes EndOfTable() {
  constexpr std::uint8_t kLength = 4;
  return {kEndOfTable, kLength, 0x02, 0x00, 0, 0};
}

Bytes TableOf(const Bytes& structures) {
  Bytes table(kTableHeader.begin(), kTableHeader.end());
  for (std::size_t shift = 0; shift < 32; shift += 8) {
    table.push_back(static_cast<std::uint8_t>(structures.size() >> shift & 0xFFU));
  }
  Append(table, structures);
  return table;
}

constexpr std::uint32_t kRefused = 5;  // ERROR_ACCESS_DENIED

// A table that says it is as long as can be, with a structure that says the same.
Bytes AbsurdTable() {
  constexpr std::size_t kHeader = 8;
  Bytes table(kHeader + 2, 0xFF);
  std::copy(kTableHeader.begin(), kTableHeader.end(), table.begin());
  table[kHeader] = kSystemInformation;
  return table;
}

// A table that ends before its texts do.
Bytes EndlessTable() {
  Bytes structures = SystemInformation(simulation::EndlessText());
  structures.resize(structures.size() - 2);
  return TableOf(structures);
}

}  // namespace

FirmwareTable ReadSystemFirmwareTable() {
  switch (simulation::Announce("GetSystemFirmwareTable", {Disturbance::kFails, Disturbance::kEmpty,
                                                          Disturbance::kAbsurd, Disturbance::kEndlessText})) {
    case Disturbance::kFails:
      return {{}, kRefused};
    case Disturbance::kEmpty:
      return {};
    case Disturbance::kAbsurd:
      return {AbsurdTable()};
    case Disturbance::kEndlessText:
      return {EndlessTable()};
    default:
      break;
  }
  const simulation::Machine& machine = simulation::CurrentMachine();
  if (machine.smbios_failure) return {{}, static_cast<std::uint32_t>(machine.smbios_failure->status)};
  Bytes structures = SystemInformation(machine.smbios_serial_number);
  Append(structures, EndOfTable());
  return {TableOf(structures)};
}

}  // namespace zt::shared::smbios
