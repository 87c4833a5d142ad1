#include "zt/shared/smbios/smbios_info.h"

#include <algorithm>
#include <cstddef>
#include <span>

#include "system_firmware_reader.h"

namespace zt::shared::smbios {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kTableHeaderSize = 8;
constexpr std::size_t kTableLengthOffset = 4;  // 32-bit little-endian length of the structures
constexpr std::size_t kStructureHeaderSize = 4;
constexpr std::uint8_t kSystemInformation = 1;
constexpr std::uint8_t kEndOfTable = 127;

// Offsets of the text numbers inside the formatted part of a type 1 structure.
constexpr std::size_t kManufacturer = 0x04;
constexpr std::size_t kProductName = 0x05;
constexpr std::size_t kVersion = 0x06;
constexpr std::size_t kSerialNumber = 0x07;

// One structure: its formatted part, and the zero-terminated texts that follow it.
struct Structure {
  Bytes formatted;
  Bytes texts;
};

// The structures' bytes: as many as the header promises, and as there are.
Bytes StructuresOf(Bytes table) {
  if (table.size() < kTableHeaderSize) return {};
  std::size_t length = 0;
  for (std::size_t i = 4; i-- > 0;) length = length << 8U | table[kTableLengthOffset + i];
  return table.subspan(kTableHeaderSize, std::min(length, table.size() - kTableHeaderSize));
}

// Length of the text set at the front of `bytes` with the two zeros that end it; all of it when they are missing.
std::size_t TextSetSize(Bytes bytes) {
  for (std::size_t i = 0; i + 1 < bytes.size(); ++i) {
    if (bytes[i] == 0 && bytes[i + 1] == 0) return i + 2;
  }
  return bytes.size();
}

// Takes the first structure off `bytes`; false at the end of the table or where it no longer holds together.
bool TakeStructure(Bytes& bytes, Structure& structure) {
  if (bytes.size() < kStructureHeaderSize) return false;
  const std::size_t length = bytes[1];
  if (length < kStructureHeaderSize || length > bytes.size() || bytes[0] == kEndOfTable) return false;
  structure.formatted = bytes.first(length);
  const std::size_t text_size = TextSetSize(bytes.subspan(length));
  structure.texts = bytes.subspan(length, text_size);
  bytes = bytes.subspan(length + text_size);
  return true;
}

// The text that the byte at `offset` of the formatted part numbers, counting from 1; absent for number 0, for a
// structure too short to have the byte, and for a number beyond the texts.
std::optional<std::string> TextAt(const Structure& structure, std::size_t offset) {
  if (offset >= structure.formatted.size() || structure.formatted[offset] == 0) return std::nullopt;
  auto begin = structure.texts.begin();
  for (int skipped = 1; skipped < structure.formatted[offset]; ++skipped) {
    begin = std::find(begin, structure.texts.end(), 0);
    if (begin == structure.texts.end()) return std::nullopt;
    ++begin;
  }
  const auto end = std::find(begin, structure.texts.end(), 0);
  if (end == structure.texts.end()) return std::nullopt;
  // Past the last text stands the zero that ends the set, not an empty text.
  if (begin == end && begin != structure.texts.begin()) return std::nullopt;
  return std::string(begin, end);
}

TypeSysInfo ReadSystemInfo(Bytes table) {
  Bytes rest = StructuresOf(table);
  Structure structure;
  while (TakeStructure(rest, structure)) {
    if (structure.formatted[0] != kSystemInformation) continue;
    return {TextAt(structure, kManufacturer), TextAt(structure, kProductName), TextAt(structure, kVersion),
            TextAt(structure, kSerialNumber)};
  }
  return {};
}

}  // namespace

FirmwareReader::~FirmwareReader() = default;

SMBiosInfo::SMBiosInfo(FirmwareReader* reader)
    : system_info_(ReadSystemInfo(reader != nullptr ? reader->ReadTable() : ReadSystemFirmwareTable())) {}

}  // namespace zt::shared::smbios
