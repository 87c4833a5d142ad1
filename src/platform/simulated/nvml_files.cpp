#include "platform/nvml_files.h"

#include "simulation/calls.h"
#include "simulation/library_folder.h"

namespace zt::telemetry::collector::performancesamples::platform {

// A machine with a driver of the older kind: its system folder holds none, so that the second place is tried.
std::vector<std::filesystem::path> NvmlFiles() {
  if (simulation::Fails("SHGetKnownFolderPath")) return {};
  const std::filesystem::path folder = simulation::LibraryFolder();
  return {folder / "System32" / "nvml.dll", folder / "nvml.dll"};
}

}  // namespace zt::telemetry::collector::performancesamples::platform
