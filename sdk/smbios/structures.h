#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace zt::shared::smbios {

using Bytes = std::span<const std::uint8_t>;

/// One structure: its formatted part, and the zero-terminated texts that follow it.
struct Structure {
  Bytes formatted;
  Bytes texts;

  std::uint8_t Type() const { return formatted[0]; }
};

/// The structures' bytes of a raw table: as many as its header promises, and as there are.
Bytes StructuresOf(Bytes table);

/// Takes the first structure off `bytes`; false at the end of the table or where it no longer holds together.
bool TakeStructure(Bytes& bytes, Structure& structure);

/// The text that the byte at `offset` of the formatted part numbers, counting from 1; absent for number 0, for a
/// structure too short to have the byte, and for a number beyond the texts.
std::optional<std::string> TextAt(const Structure& structure, std::size_t offset);

/// The byte at `offset` of the formatted part; absent in a structure too short to have it.
std::optional<std::uint8_t> ByteAt(const Structure& structure, std::size_t offset);

/// The little-endian 16-bit number at `offset` of the formatted part; absent in a structure too short to have it.
std::optional<std::uint16_t> WordAt(const Structure& structure, std::size_t offset);

}  // namespace zt::shared::smbios
