#pragma once

#include <chrono>

namespace zt::base {

/// A clock that stands until a test moves it.
struct ScriptedClock {
  using duration = std::chrono::nanoseconds;
  using rep = duration::rep;
  using period = duration::period;
  using time_point = std::chrono::time_point<ScriptedClock>;
  static constexpr bool is_steady = true;

  static time_point now() { return time_point(time); }

  static inline duration time{0};
};

}  // namespace zt::base
