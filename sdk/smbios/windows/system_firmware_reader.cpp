#include "system_firmware_reader.h"

#include <windows.h>

namespace zt::shared::smbios {
namespace {

constexpr DWORD kRawSmbiosProvider = 0x52534D42;  // "RSMB"

}  // namespace

std::vector<std::uint8_t> ReadSystemFirmwareTable() {
  const UINT size = ::GetSystemFirmwareTable(kRawSmbiosProvider, 0, nullptr, 0);
  std::vector<std::uint8_t> table(size);
  if (size == 0) return table;
  const UINT written = ::GetSystemFirmwareTable(kRawSmbiosProvider, 0, table.data(), size);
  if (written == 0 || written > size) return {};
  table.resize(written);
  return table;
}

}  // namespace zt::shared::smbios
