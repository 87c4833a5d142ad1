#include "platform/session_clock.h"

#include <limits>

#include "simulation/calls.h"
#include "simulation/machine.h"
#include "simulation/tick_counter.h"

namespace zt::telemetry::collector::performancesamples::platform {

using simulation::Disturbance;

std::uint64_t TickCountMs() {
  const bool absurd = simulation::Announce("GetTickCount64", {Disturbance::kAbsurd}) == Disturbance::kAbsurd;
  return absurd ? std::numeric_limits<std::uint64_t>::max() : simulation::TakeTickCount();
}

std::uint32_t MaximumTouches() {
  const bool absurd = simulation::Announce("GetSystemMetrics", {Disturbance::kAbsurd}) == Disturbance::kAbsurd;
  if (absurd) return std::numeric_limits<std::uint32_t>::max();
  return simulation::CurrentMachine().session.maximum_touches;
}

std::optional<std::uint32_t> LastInputTickMs() {
  const Disturbance met = simulation::Announce("GetLastInputInfo", {Disturbance::kFails, Disturbance::kAbsurd});
  if (met == Disturbance::kFails) return std::nullopt;
  if (met == Disturbance::kAbsurd) return std::numeric_limits<std::uint32_t>::max();
  const auto& tick = simulation::CurrentMachine().session.last_input_tick_ms;
  if (!tick || std::holds_alternative<simulation::Failure>(*tick)) return std::nullopt;
  return std::get<std::uint32_t>(*tick);
}

}  // namespace zt::telemetry::collector::performancesamples::platform
