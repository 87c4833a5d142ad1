#include "platform/power_status.h"

#include "simulation/calls.h"
#include "simulation/machine.h"

namespace zt::telemetry::collector::performancesamples::platform {

std::optional<std::uint8_t> BatteryFlag() {
  using simulation::Disturbance;
  const Disturbance met = simulation::Announce("GetSystemPowerStatus", {Disturbance::kFails, Disturbance::kAbsurd});
  if (met == Disturbance::kFails) return std::nullopt;
  if (met == Disturbance::kAbsurd) return 0xFF;
  return simulation::CurrentMachine().battery_flag;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
