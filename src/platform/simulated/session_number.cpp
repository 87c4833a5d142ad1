#include "platform/session_number.h"

#include "platform/simulated/answers.h"
#include "simulation/machine.h"

namespace zt::telemetry::collector::performancesamples::platform {

std::optional<std::uint32_t> SessionNumber() {
  return simulation::Given(simulation::CurrentMachine().session.number);
}

}  // namespace zt::telemetry::collector::performancesamples::platform
