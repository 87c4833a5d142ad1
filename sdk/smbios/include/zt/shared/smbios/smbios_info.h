#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "zt/zt_smbios_export.h"

namespace zt::shared::smbios {

/// Where a raw SMBIOS table comes from.
class ZT_SMBIOS_EXPORT FirmwareReader {
 public:
  virtual ~FirmwareReader();
  /// The table as the system's firmware-table call gives it: an 8-byte header (flags, version, length of what follows),
  /// then the structures back to back. Empty when there is none.
  virtual std::vector<std::uint8_t> ReadTable() = 0;
};

/// The system information structure (type 1). A text that the structure does not have is absent; an empty one is empty.
struct TypeSysInfo {
  std::optional<std::string> manufacturer;
  std::optional<std::string> product_name;
  std::optional<std::string> version;
  std::optional<std::string> serial_number;
};

/// A portable battery structure (type 22). What the structure does not have, or calls unknown, is absent.
struct TypePortableBattery {
  std::optional<std::string> serial_number;
  std::optional<std::string> device_name;
  std::optional<std::uint16_t> design_voltage_mv;
  /// Largest error of the battery's own figures, percent.
  std::optional<std::uint8_t> max_error_percent;
};

/// Reads the machine's SMBIOS table. Broken tables are read as far as they hold together.
class ZT_SMBIOS_EXPORT SMBiosInfo {
 public:
  /// Reads the table at once. `reader`: where from; null reads this machine's own.
  explicit SMBiosInfo(FirmwareReader* reader);

  /// The system's error code when this machine's own table cannot be read; 0 also for a machine that has none.
  std::uint32_t GetReadError() const { return read_error_; }

  /// The first structure of type 1; every text is absent when the table has none.
  const TypeSysInfo& GetTypeSysInfo() const { return system_info_; }

  /// Every structure of type 22, in the table's order.
  const std::vector<TypePortableBattery>& GetPortableBatteries() const { return portable_batteries_; }

 private:
  std::uint32_t read_error_ = 0;
  TypeSysInfo system_info_;
  std::vector<TypePortableBattery> portable_batteries_;
};

}  // namespace zt::shared::smbios
