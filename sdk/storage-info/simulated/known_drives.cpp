#include "known_drives.h"

#include "simulation/calls.h"
#include "simulation/machine.h"

namespace zt::shared::storage {
namespace {

constexpr std::size_t kAbsurdlyMany = 1'000;

}  // namespace

std::vector<KnownDrive> ReadKnownDrives() {
  using simulation::Disturbance;
  switch (simulation::Announce("storage library", {Disturbance::kThrows, Disturbance::kEmpty, Disturbance::kAbsurd,
                                                   Disturbance::kEndlessText})) {
    case Disturbance::kEmpty:
      return {};
    case Disturbance::kAbsurd:
      return std::vector<KnownDrive>(kAbsurdlyMany);
    case Disturbance::kEndlessText:
      return {{simulation::EndlessText(), simulation::EndlessText()}};
    default:
      break;
  }
  std::vector<KnownDrive> drives;
  for (const simulation::LibraryDrive& drive : simulation::CurrentMachine().storage_library) {
    drives.push_back({drive.name, drive.wmi_serial});
  }
  return drives;
}

}  // namespace zt::shared::storage
