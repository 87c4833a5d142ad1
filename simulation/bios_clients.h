#pragma once

#include <cstddef>

#include "zt/zt_simulation_export.h"

namespace zt::simulation {

/// The clients of the private firmware interface that the process made. No machine's: they outlive `UseMachine`.
struct BiosClients {
  std::size_t made = 0;
  std::size_t alive = 0;
};

/// For the simulated client to write.
ZT_SIMULATION_EXPORT BiosClients& CurrentBiosClients();

}  // namespace zt::simulation
