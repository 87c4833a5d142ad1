#include "system_firmware_reader.h"

#include <windows.h>

namespace zt::shared::smbios {
namespace {

constexpr DWORD kRawSmbiosProvider = 0x52534D42;  // "RSMB"

// A system that knows no such tables calls the question itself invalid.
std::uint32_t LastErrorUnlessAbsent() {
  const DWORD error = ::GetLastError();
  return error == ERROR_INVALID_FUNCTION ? ERROR_SUCCESS : error;
}

}  // namespace

FirmwareTable ReadSystemFirmwareTable() {
  const UINT size = ::GetSystemFirmwareTable(kRawSmbiosProvider, 0, nullptr, 0);
  if (size == 0) return {{}, LastErrorUnlessAbsent()};
  FirmwareTable table;
  table.bytes.resize(size);
  const UINT written = ::GetSystemFirmwareTable(kRawSmbiosProvider, 0, table.bytes.data(), size);
  if (written == 0) return {{}, LastErrorUnlessAbsent()};
  if (written > size) return {{}, ERROR_INSUFFICIENT_BUFFER};  // the table grew meanwhile
  table.bytes.resize(written);
  return table;
}

}  // namespace zt::shared::smbios
