#pragma once

#include <cmath>
#include <concepts>

namespace zt::telemetry::collector::performancesamples {

/// `value` with two decimals, in its own precision throughout; halves are rounded away from zero.
template <std::floating_point Number>
Number RoundToTwoDecimals(Number value) {
  constexpr Number kFactor = 100;
  return std::round(value * kFactor) / kFactor;
}

}  // namespace zt::telemetry::collector::performancesamples
