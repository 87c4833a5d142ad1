#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "zt/zt_simulation_export.h"

namespace zt::simulation {

/// The time that passes while somebody waits for the machine. Nothing else moves it, and it takes none of the real one.
/// No machine's: it goes on through `UseMachine`.
struct WaitClock {
  using duration = std::chrono::milliseconds;
  using rep = duration::rep;
  using period = duration::period;
  using time_point = std::chrono::time_point<WaitClock>;
  static constexpr bool is_steady = true;

  ZT_SIMULATION_EXPORT static time_point now();
};

/// Says how long the machine takes for `what`, which is waited for `limit` at most: `limit` itself is just in time.
using Slowness = std::function<std::chrono::milliseconds(const std::string& what, std::chrono::milliseconds limit)>;

/// Lets the machine take its time from here on. An empty function makes it answer at once again.
ZT_SIMULATION_EXPORT void BeSlow(Slowness slowness);

/// For the simulated definitions: waits for `what`, `limit` at most. False where the limit came first.
ZT_SIMULATION_EXPORT bool WaitFor(const char* what, std::chrono::milliseconds limit);

}  // namespace zt::simulation
