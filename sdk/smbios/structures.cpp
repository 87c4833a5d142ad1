#include "structures.h"

#include <algorithm>

namespace zt::shared::smbios {
namespace {

constexpr std::size_t kTableHeaderSize = 8;
constexpr std::size_t kTableLengthOffset = 4;  // 32-bit little-endian length of the structures
constexpr std::size_t kStructureHeaderSize = 4;
constexpr std::uint8_t kEndOfTable = 127;

// Length of the text set at the front of `bytes` with the two zeros that end it; all of it when they are missing.
std::size_t TextSetSize(Bytes bytes) {
  for (std::size_t i = 0; i + 1 < bytes.size(); ++i) {
    if (bytes[i] == 0 && bytes[i + 1] == 0) return i + 2;
  }
  return bytes.size();
}

}  // namespace

Bytes StructuresOf(Bytes table) {
  if (table.size() < kTableHeaderSize) return {};
  std::size_t length = 0;
  for (std::size_t i = 4; i-- > 0;) length = length << 8U | table[kTableLengthOffset + i];
  return table.subspan(kTableHeaderSize, std::min(length, table.size() - kTableHeaderSize));
}

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

std::optional<std::uint8_t> ByteAt(const Structure& structure, std::size_t offset) {
  if (offset >= structure.formatted.size()) return std::nullopt;
  return structure.formatted[offset];
}

std::optional<std::uint16_t> WordAt(const Structure& structure, std::size_t offset) {
  if (offset + 1 >= structure.formatted.size()) return std::nullopt;
  return static_cast<std::uint16_t>(structure.formatted[offset] | structure.formatted[offset + 1] << 8U);
}

}  // namespace zt::shared::smbios
