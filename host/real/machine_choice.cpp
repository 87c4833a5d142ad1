#include "host/machine_choice.h"

#include "host/failure.h"

namespace zt::telemetry::host {

std::vector<ShippedMachine> ShippedMachines() {
  return {};
}

void ChooseMachine(const std::optional<std::string>& name_or_file) {
  if (!name_or_file.has_value()) return;
  throw WrongUsage("--machine " + *name_or_file +
                   ": this build samples the machine it runs on; simulated machines are for the simulated build");
}

}  // namespace zt::telemetry::host
