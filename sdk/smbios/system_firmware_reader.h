#pragma once

#include <cstdint>
#include <vector>

namespace zt::shared::smbios {

/// What reading the machine's SMBIOS table gave.
struct FirmwareTable {
  std::vector<std::uint8_t> bytes;  // header included; empty where there is no table, or it cannot be read
  std::uint32_t error = 0;          // the system's error code when it cannot be read
};

/// Reads the raw SMBIOS table of this machine.
FirmwareTable ReadSystemFirmwareTable();

}  // namespace zt::shared::smbios
