#pragma once

#include <vector>

#include "zt/zt_storage_info_export.h"

namespace zt::shared::storage {

struct KnownDrive;

/// The fixed drives as the maker's storage library knows them, taken when the object is made. Drives on an external bus
/// and virtual ones are not among them, and no drive whose serial number cannot tell it from another.
class ZT_STORAGE_INFO_EXPORT PCIeStorageDrive {
 public:
  PCIeStorageDrive();
  ~PCIeStorageDrive();
  PCIeStorageDrive(const PCIeStorageDrive&) = delete;
  PCIeStorageDrive& operator=(const PCIeStorageDrive&) = delete;

  /// The drives' own identities (the serial number on the drive's label), one C string each, UTF-8; `count` receives
  /// their number. The caller releases the array with `free`; the strings belong to this object. Null when there is
  /// none.
  char** GetAllStorageDrives(int& count);

  /// The serial number of `drive` (one of the texts of `GetAllStorageDrives`) in the form that WMI's Win32_DiskDrive
  /// reports it, without blanks at its ends; belongs to this object. Empty for an unknown drive.
  const char* GetWMISN(const char* drive);

 private:
  std::vector<KnownDrive> drives_;
};

}  // namespace zt::shared::storage
