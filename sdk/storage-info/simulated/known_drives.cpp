#include "known_drives.h"

#include "simulation/machine.h"

namespace zt::shared::storage {

std::vector<KnownDrive> ReadKnownDrives() {
  std::vector<KnownDrive> drives;
  for (const simulation::LibraryDrive& drive : simulation::CurrentMachine().storage_library) {
    drives.push_back({drive.name, drive.wmi_serial});
  }
  return drives;
}

}  // namespace zt::shared::storage
