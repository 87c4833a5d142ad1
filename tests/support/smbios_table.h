#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "zt/shared/smbios/smbios_info.h"

// Tables of the firmware, byte by byte.
namespace zt::shared::smbios {

using Bytes = std::vector<std::uint8_t>;

/// Gives one table, and counts how often it is read.
class FixedReader : public FirmwareReader {
 public:
  explicit FixedReader(Bytes table) : table_(std::move(table)) {}
  Bytes ReadTable() override {
    ++reads;
    return table_;
  }

  int reads = 0;

 private:
  Bytes table_;
};

inline Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

/// The 8 bytes in front of the structures; `length` is what it says of their size.
inline Bytes Header(std::size_t length) {
  Bytes header = {0, 3, 2, 0};
  for (unsigned shift = 0; shift < 32; shift += 8) header.push_back(static_cast<std::uint8_t>(length >> shift));
  return header;
}

inline Bytes Table(const Bytes& structures) {
  return Header(structures.size()) + structures;
}

}  // namespace zt::shared::smbios
