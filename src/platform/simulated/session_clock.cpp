#include "platform/session_clock.h"

#include "simulation/machine.h"
#include "simulation/tick_counter.h"

namespace zt::telemetry::collector::performancesamples::platform {

std::uint64_t TickCountMs() {
  return simulation::TakeTickCount();
}

std::uint32_t MaximumTouches() {
  return simulation::CurrentMachine().session.maximum_touches;
}

std::optional<std::uint32_t> LastInputTickMs() {
  const auto& tick = simulation::CurrentMachine().session.last_input_tick_ms;
  if (!tick || std::holds_alternative<simulation::Failure>(*tick)) return std::nullopt;
  return std::get<std::uint32_t>(*tick);
}

}  // namespace zt::telemetry::collector::performancesamples::platform
