#pragma once

#include <string>
#include <vector>

#include "disk_descriptor.h"
#include "known_drives.h"

/// Which disks are fixed drives, and what names they go by.
namespace zt::shared::storage {

struct Disk {
  DiskDescriptor descriptor;
  /// The serial number of what the disk hangs on; for an NVMe drive that is the drive itself. Empty when it has none.
  std::string adapter_serial;
};

/// The serial number as WMI reports it, without blanks at its ends.
std::string WmiForm(const Disk& disk);

/// The serial number of the drive itself. For NVMe drives Windows reports an identifier in its place ("0025_38B1_..."),
/// or the serial number with the number of the namespace ("S4EV_00000001."); there the adapter tells.
std::string OwnSerial(const Disk& disk);

/// The fixed drives among all disks of the machine. One without a serial number of its own is left out, and so are
/// disks that share a WMI form (bridges with a serial number of their own, several without any): the form tells none of
/// them.
std::vector<KnownDrive> IdentifyFixedDrives(const std::vector<Disk>& disks);

}  // namespace zt::shared::storage
