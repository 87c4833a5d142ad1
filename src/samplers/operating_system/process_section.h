#pragma once

#include "performance_samples_upload.pb.h"
#include "types/wmi_process_info.h"

namespace zt::telemetry::collector::performancesamples {

/// Adds `processes` to the section in their order, at most 20 of them. A process without processor time or peak working
/// set, or with a load or working set that is no finite number, is left out.
void AddProcesses(const ProcessList& processes,
                  contract::upload::log::PcLogPerformanceSamplesAsCDM_OperatingSystemInfo& section);

}  // namespace zt::telemetry::collector::performancesamples
