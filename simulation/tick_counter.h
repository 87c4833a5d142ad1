#pragma once

#include <cstdint>

#include "zt/zt_simulation_export.h"

namespace zt::simulation {

/// Reads the current machine's tick count: the first one at the first reading since `UseMachine`, the next one at the
/// next, the last one from then on. 0 on a machine that states none.
ZT_SIMULATION_EXPORT std::uint64_t TakeTickCount();

}  // namespace zt::simulation
