#include "host/machine_life.h"

#include "host/failure.h"

namespace zt::telemetry::host {

std::unique_ptr<MachineLife> NewMachineLife(std::chrono::sys_seconds /*begin*/, std::uint64_t /*random_seed*/) {
  throw WrongUsage(
      "simulate: this build samples the machine it runs on; simulated machines are for the simulated build");
}

}  // namespace zt::telemetry::host
