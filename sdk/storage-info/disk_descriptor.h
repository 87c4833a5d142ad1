#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

/// What a disk's driver answers about it, from the bytes of the answer. Drivers are not to be trusted with offsets and
/// sizes: nothing is read outside the bytes.
namespace zt::shared::storage {

/// How a disk is connected; numbers of the system. Those that are not named here are possible too.
enum class BusType : std::uint32_t {
  kScsi = 0x01,
  kAtapi = 0x02,
  kAta = 0x03,
  kUsb = 0x07,
  kRaid = 0x08,
  kSas = 0x0A,
  kSata = 0x0B,
  kMmc = 0x0D,
  kVirtual = 0x0E,
  kNvme = 0x11,
  kScm = 0x12,
  kUfs = 0x13,
};

struct DiskDescriptor {
  BusType bus{};
  bool removable_media = false;
  /// As the driver gives it, blanks at its ends included; empty when it gives none.
  std::string serial;
};

/// Reads a STORAGE_DEVICE_DESCRIPTOR; nothing when the bytes are too few for one.
std::optional<DiskDescriptor> ParseDiskDescriptor(std::span<const std::uint8_t> bytes);

/// The text of a STORAGE_ADAPTER_SERIAL_NUMBER, UTF-8; empty when the bytes hold none.
std::string ParseAdapterSerial(std::span<const std::uint8_t> bytes);

}  // namespace zt::shared::storage
