#include "disk_descriptor.h"

#include <zt/text/wide_text.h>

#include <algorithm>
#include <cstddef>

namespace zt::shared::storage {
namespace {

using Bytes = std::span<const std::uint8_t>;

// Offsets of STORAGE_DEVICE_DESCRIPTOR.
constexpr std::size_t kRemovableMedia = 10;
constexpr std::size_t kSerialNumberOffset = 24;
constexpr std::size_t kBusType = 28;
constexpr std::size_t kDescriptorSize = 36;

// Offset of the text in STORAGE_ADAPTER_SERIAL_NUMBER.
constexpr std::size_t kAdapterSerial = 8;

// Little-endian.
std::uint32_t NumberAt(Bytes bytes, std::size_t offset) {
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < sizeof(number); ++i) number |= std::uint32_t{bytes[offset + i]} << (8 * i);
  return number;
}

// To its NUL, or to the end of the bytes.
std::string TextAt(Bytes bytes, std::size_t offset) {
  const Bytes rest = bytes.subspan(offset);
  return {rest.begin(), std::find(rest.begin(), rest.end(), std::uint8_t{0})};
}

}  // namespace

std::optional<DiskDescriptor> ParseDiskDescriptor(Bytes bytes) {
  if (bytes.size() < kDescriptorSize) return std::nullopt;
  DiskDescriptor descriptor;
  descriptor.bus = static_cast<BusType>(NumberAt(bytes, kBusType));
  descriptor.removable_media = bytes[kRemovableMedia] != 0;
  // 0 says that there is none; so do some drivers with the largest number.
  const std::uint32_t serial_offset = NumberAt(bytes, kSerialNumberOffset);
  const bool has_serial = serial_offset >= kDescriptorSize && serial_offset < bytes.size();
  if (has_serial) descriptor.serial = TextAt(bytes, serial_offset);
  return descriptor;
}

std::string ParseAdapterSerial(Bytes bytes) {
  std::wstring text;
  for (std::size_t i = kAdapterSerial; i + 1 < bytes.size(); i += 2) {
    const auto unit = static_cast<wchar_t>(bytes[i] | bytes[i + 1] << 8);
    if (unit == 0) break;
    text += unit;
  }
  return text::ToUtf8(text);
}

}  // namespace zt::shared::storage
