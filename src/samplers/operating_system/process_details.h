#pragma once

#include "types/wmi_process_info.h"

namespace zt::telemetry::collector::performancesamples {

/// Adds status, elevation, start time and window state of the process. A call of the system that fails leaves its
/// figure at "unknown", false or empty; a process that cannot be opened, having ended meanwhile, ends the pass with a
/// `std::exception*`.
void FillDetails(WMIProcessInfo& process);

}  // namespace zt::telemetry::collector::performancesamples
