#pragma once

#include <filesystem>
#include <vector>

namespace zt::telemetry::collector::performancesamples::platform {

/// Where NVIDIA's driver may have put its management library, the likelier place first.
///
/// On Windows full paths: nvml.dll in the system folder, where drivers put it today, then in the "NVIDIA
/// Corporation\NVSMI" folder of the 64-bit program files, where older ones did and may have left a stale one. Elsewhere
/// the name by which the system's loader knows it.
std::vector<std::filesystem::path> NvmlFiles();

}  // namespace zt::telemetry::collector::performancesamples::platform
