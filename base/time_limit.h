#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace zt::base {

/// The status of a wait that came to its limit: HRESULT_FROM_WIN32(ERROR_TIMEOUT).
inline constexpr std::int32_t kTimedOut = static_cast<std::int32_t>(0x800705B4);

/// A limit of time for work in several steps, counted from its making.
template <typename Clock>
class TimeLimitBy {
 public:
  explicit TimeLimitBy(typename Clock::duration limit) : end_(Clock::now() + limit) {}

  /// What is left, 0 once it is over. Rounded up to whole milliseconds: a wait of so long ends with the limit or just
  /// behind it, and not again and again just before.
  std::chrono::milliseconds Left() const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end_ - Clock::now());
    return std::max(left, std::chrono::milliseconds::zero());
  }

  bool IsOver() const { return Clock::now() >= end_; }

 private:
  typename Clock::time_point end_;
};

/// By the clock that no change of the system's time moves.
using TimeLimit = TimeLimitBy<std::chrono::steady_clock>;

}  // namespace zt::base
