#include "platform/system_message.h"

#include "simulation/calls.h"
#include "simulation/machine.h"

namespace zt::telemetry::collector::performancesamples::platform {

std::optional<std::string> SystemMessage(std::int32_t code) {
  using simulation::Disturbance;
  const Disturbance met =
      simulation::Announce("FormatMessage", {Disturbance::kFails, Disturbance::kEmpty, Disturbance::kEndlessText});
  if (met == Disturbance::kFails) return std::nullopt;
  if (met == Disturbance::kEmpty) return std::string();
  if (met == Disturbance::kEndlessText) return simulation::EndlessText();
  for (const simulation::SystemMessage& message : simulation::CurrentMachine().system_messages) {
    if (message.code == code) return message.text;
  }
  return std::nullopt;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
