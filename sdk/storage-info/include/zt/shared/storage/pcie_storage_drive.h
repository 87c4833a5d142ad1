#pragma once

#include <string>
#include <vector>

namespace zt::shared::storage {

/// The fixed drives as the maker's storage library knows them.
class PCIeStorageDrive {
 public:
  PCIeStorageDrive();
  ~PCIeStorageDrive();

  /// The drives' own identities, one C string each; `count` receives their number. The caller releases the array with
  /// `free`; the strings belong to this object. Null when there is none.
  char** GetAllStorageDrives(int& count);

  /// The serial number of `drive` in the form that WMI reports it; belongs to this object. Empty for an unknown drive.
  const char* GetWMISN(const char* drive);

 private:
  struct Drive {
    std::string name;
    std::string wmi_serial;
  };
  std::vector<Drive> drives_;
};

}  // namespace zt::shared::storage
