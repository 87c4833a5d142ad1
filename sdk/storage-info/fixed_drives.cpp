#include "fixed_drives.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <string_view>

#include "base/trimmed.h"

namespace zt::shared::storage {
namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEFabcdef";

// External and network buses, virtual disks and pools of disks are not among them.
constexpr std::array kFixedBuses = {BusType::kScsi, BusType::kAtapi, BusType::kAta,  BusType::kRaid, BusType::kSas,
                                    BusType::kSata, BusType::kMmc,   BusType::kNvme, BusType::kScm,  BusType::kUfs};

std::string Trim(std::string_view text) {
  return std::string(base::Trimmed(text, " \t\n\v\f\r"));
}

// Takes off the number of the NVMe namespace: "_", eight hexadecimal digits and a full stop.
std::string_view WithoutNamespace(std::string_view serial) {
  constexpr std::size_t kDigits = 8;
  constexpr std::size_t kLength = kDigits + 2;
  if (serial.size() <= kLength) return serial;
  const std::string_view end = serial.substr(serial.size() - kLength);
  const bool is_namespace = end.front() == '_' && end.back() == '.' &&
                            end.substr(1, kDigits).find_first_not_of(kHexDigits) == std::string_view::npos;
  return is_namespace ? serial.substr(0, serial.size() - kLength) : serial;
}

bool IsFixed(const DiskDescriptor& descriptor) {
  return !descriptor.removable_media &&
         std::find(kFixedBuses.begin(), kFixedBuses.end(), descriptor.bus) != kFixedBuses.end();
}

}  // namespace

std::string WmiForm(const Disk& disk) {
  return Trim(disk.descriptor.serial);
}

std::string OwnSerial(const Disk& disk) {
  const std::string wmi_form = WmiForm(disk);
  // Elsewhere the adapter is a controller, with the same serial number for all of its disks.
  if (disk.descriptor.bus != BusType::kNvme) return wmi_form;
  const std::string adapter_serial = Trim(disk.adapter_serial);
  return !adapter_serial.empty() ? adapter_serial : Trim(WithoutNamespace(wmi_form));
}

std::vector<KnownDrive> IdentifyFixedDrives(const std::vector<Disk>& disks) {
  std::map<std::string, int> bearers;
  for (const Disk& disk : disks) ++bearers[WmiForm(disk)];
  std::vector<KnownDrive> drives;
  for (const Disk& disk : disks) {
    KnownDrive drive{OwnSerial(disk), WmiForm(disk)};
    const bool tells_the_drive = bearers[drive.wmi_serial] == 1;
    if (IsFixed(disk.descriptor) && !drive.name.empty() && tells_the_drive) drives.push_back(drive);
  }
  return drives;
}

}  // namespace zt::shared::storage
