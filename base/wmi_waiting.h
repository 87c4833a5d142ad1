#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <optional>

#include "base/time_limit.h"

/// How long WMI may take, whichever machine answers for it.
namespace zt::base {

/// The time of an answer that comes in parts: until the next part, and as a whole.
struct WaitLimits {
  std::chrono::milliseconds object{5'000};
  std::chrono::milliseconds whole{15'000};
};

/// After which the system gives up connecting to a WMI that is out of order (WBEM_FLAG_CONNECT_USE_MAX_WAIT).
inline constexpr std::chrono::minutes kConnectionLimit{2};

/// Asks for part after part, each within what `limits` leave it: `ask(wait)` returns the status with which all is over,
/// none to go on. Returns that status, `kTimedOut` when the whole limit comes first.
template <typename Clock, typename Ask>
std::int32_t GatherWithin(const WaitLimits& limits, const Ask& ask) {
  const TimeLimitBy<Clock> limit(limits.whole);
  for (auto left = limit.Left(); left > left.zero(); left = limit.Left()) {
    const std::optional<std::int32_t> status = ask(std::min(limits.object, left));
    if (status) return *status;
  }
  return kTimedOut;
}

}  // namespace zt::base
