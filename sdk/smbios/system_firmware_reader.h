#pragma once

#include <cstdint>
#include <vector>

namespace zt::shared::smbios {

/// The raw SMBIOS table of this machine, header included; empty when it cannot be read.
std::vector<std::uint8_t> ReadSystemFirmwareTable();

}  // namespace zt::shared::smbios
