#pragma once

#include <cmath>

namespace zt::telemetry::collector::performancesamples {

/// `value` with two decimals, in single precision throughout; halves are rounded away from zero.
inline float RoundToTwoDecimals(float value) {
  constexpr float kFactor = 100.0F;
  return std::round(value * kFactor) / kFactor;
}

}  // namespace zt::telemetry::collector::performancesamples
