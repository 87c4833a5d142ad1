#include "known_drives.h"

#include <windows.h>

#include "disk_names.h"
#include "fixed_drives.h"
#include "windows/disk_device.h"

namespace zt::shared::storage {
namespace {

constexpr std::size_t kFirstCapacity = 16 * 1024;   // characters
constexpr std::size_t kLastCapacity = 1024 * 1024;  // characters

// The names of all devices, each ended by a NUL. The system does not tell how much room they need.
std::wstring DeviceNames() {
  for (std::size_t capacity = kFirstCapacity; capacity <= kLastCapacity; capacity *= 2) {
    std::wstring names(capacity, L'\0');
    const DWORD length = ::QueryDosDeviceW(nullptr, names.data(), static_cast<DWORD>(capacity));
    if (length == 0 && ::GetLastError() == ERROR_INSUFFICIENT_BUFFER) continue;
    names.resize(length);
    return names;
  }
  return {};
}

}  // namespace

std::vector<KnownDrive> ReadKnownDrives() {
  const base::TimeLimit all(kAllDisksLimit);
  std::vector<Disk> disks;
  for (const unsigned number : FindDiskNumbers(DeviceNames())) {
    const DiskDevice device(number, all);
    const auto descriptor = ParseDiskDescriptor(device.Read(DiskProperty::kDescriptor));
    if (!descriptor) continue;
    disks.push_back({*descriptor, ParseAdapterSerial(device.Read(DiskProperty::kAdapterSerialNumber))});
  }
  return IdentifyFixedDrives(disks);
}

}  // namespace zt::shared::storage
