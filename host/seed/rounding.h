#pragma once

#include <cmath>
#include <cstdint>

namespace zt::telemetry::host {

/// The next whole number.
inline std::int64_t Whole(double value) {
  return static_cast<std::int64_t>(std::llround(value));
}

/// To a tenth, as link rates are reported.
inline double Tenths(double value) {
  constexpr double kTenths = 10;
  return static_cast<double>(std::llround(value * kTenths)) / kTenths;
}

}  // namespace zt::telemetry::host
