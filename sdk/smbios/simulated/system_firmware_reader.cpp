#include "system_firmware_reader.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "simulation/machine.h"

namespace zt::shared::smbios {
namespace {

using Bytes = std::vector<std::uint8_t>;

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
  const bool has_texts = serial_number && !serial_number->empty();
  if (has_texts) structure.insert(structure.end(), serial_number->begin(), serial_number->end());
  Append(structure, {0, 0});
  return structure;
}

Bytes EndOfTable() {
  constexpr std::uint8_t kLength = 4;
  return {kEndOfTable, kLength, 0x02, 0x00, 0, 0};
}

}  // namespace

FirmwareTable ReadSystemFirmwareTable() {
  const simulation::Machine& machine = simulation::CurrentMachine();
  if (machine.smbios_failure) return {{}, static_cast<std::uint32_t>(machine.smbios_failure->status)};
  Bytes structures = SystemInformation(machine.smbios_serial_number);
  Append(structures, EndOfTable());
  Bytes table(kTableHeader.begin(), kTableHeader.end());
  for (std::size_t shift = 0; shift < 32; shift += 8) {
    table.push_back(static_cast<std::uint8_t>(structures.size() >> shift & 0xFFU));
  }
  Append(table, structures);
  return {std::move(table)};
}

}  // namespace zt::shared::smbios
