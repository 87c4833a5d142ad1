#include "platform/power_status.h"

#include "simulation/machine.h"

namespace zt::telemetry::collector::performancesamples::platform {

std::optional<std::uint8_t> BatteryFlag() {
  return simulation::CurrentMachine().battery_flag;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
