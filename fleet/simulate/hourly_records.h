#pragma once

#include <chrono>

#include "fleet/simulate/machine_facts.h"
#include "host/seed/network_simulation.h"
#include "host/seed/thermal_simulation.h"
#include "performance_samples_upload.pb.h"

namespace zt::telemetry::fleet {

/// Makes `record` the thermal record of the hour that begins at `hour` by the machine's own clock, of samples of each
/// minute of it, as the collector sums them up. `simulated`: that hour by the clock of the simulation.
void FillThermalRecord(std::chrono::sys_seconds hour, std::chrono::sys_seconds simulated, const MachineFacts& facts,
                       std::int64_t load_percent, host::ThermalSimulation& thermal,
                       contract::upload::log::PcLogPerformanceSamplesAsCDM& record);

/// The network record of the hour, likewise.
void FillNetworkRecord(std::chrono::sys_seconds hour, std::chrono::sys_seconds simulated, const MachineFacts& facts,
                       host::NetworkSimulation& network, contract::upload::log::PcLogPerformanceSamplesAsCDM& record);

}  // namespace zt::telemetry::fleet
