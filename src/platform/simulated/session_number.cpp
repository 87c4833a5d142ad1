#include "platform/session_number.h"

#include "platform/simulated/answers.h"
#include "simulation/calls.h"
#include "simulation/machine.h"

namespace zt::telemetry::collector::performancesamples::platform {

std::optional<std::uint32_t> SessionNumber() {
  if (simulation::Fails("ProcessIdToSessionId")) return std::nullopt;
  return simulation::Given(simulation::CurrentMachine().session.number);
}

}  // namespace zt::telemetry::collector::performancesamples::platform
