#include "platform/system_message.h"

#include "simulation/machine.h"

namespace zt::telemetry::collector::performancesamples::platform {

std::optional<std::string> SystemMessage(std::int32_t code) {
  for (const simulation::SystemMessage& message : simulation::CurrentMachine().system_messages) {
    if (message.code == code) return message.text;
  }
  return std::nullopt;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
