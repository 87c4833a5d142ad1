#include "zt/shared/storage/pcie_storage_drive.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>

#include "known_drives.h"

namespace zt::shared::storage {
namespace {

// The array of texts as the caller releases it.
char** AllocateArray(std::size_t count) {
  void* array = std::malloc(count * sizeof(char*));
  if (array == nullptr) throw std::bad_alloc();  // coverage: no test refuses what the C library allocates
  return static_cast<char**>(array);
}

}  // namespace

PCIeStorageDrive::PCIeStorageDrive() : drives_(ReadKnownDrives()) {}

PCIeStorageDrive::~PCIeStorageDrive() = default;

char** PCIeStorageDrive::GetAllStorageDrives(int& count) {
  count = static_cast<int>(drives_.size());
  if (drives_.empty()) return nullptr;
  char** names = AllocateArray(drives_.size());
  std::transform(drives_.begin(), drives_.end(), names, [](KnownDrive& drive) { return drive.name.data(); });
  return names;
}

// By the very text first: two drives may bear the same identity.
const char* PCIeStorageDrive::GetWMISN(const char* drive) {
  auto found = std::find_if(drives_.begin(), drives_.end(),
                            [drive](const KnownDrive& known) { return known.name.data() == drive; });
  if (found == drives_.end()) {
    found =
        std::find_if(drives_.begin(), drives_.end(), [drive](const KnownDrive& known) { return known.name == drive; });
  }
  return found != drives_.end() ? found->wmi_serial.c_str() : "";
}

}  // namespace zt::shared::storage
