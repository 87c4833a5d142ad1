#pragma once

#include <cstdint>
#include <limits>

/// Conversions from floating point to integers as the processor's truncation gives them. C++ leaves them undefined for
/// values out of range, while stored samples and reports can hold anything; analyses of whole fleets rely on these
/// results.
namespace zt::telemetry::collector::performancesamples {

/// Truncated toward zero; the smallest integer for NaN and for values out of range.
inline std::int64_t TruncateToInt64(double value) {
  constexpr double kLimit = 9223372036854775808.0;  // 2^63
  const bool in_range = value >= -kLimit && value < kLimit;
  return in_range ? static_cast<std::int64_t>(value) : std::numeric_limits<std::int64_t>::min();
}

/// Truncated toward zero; the smallest integer for NaN and for values out of range.
inline std::int32_t TruncateToInt32(double value) {
  constexpr double kLimit = 2147483648.0;  // 2^31
  const bool in_range = value > -kLimit - 1 && value < kLimit;
  return in_range ? static_cast<std::int32_t>(value) : std::numeric_limits<std::int32_t>::min();
}

/// Truncated toward zero to 64 bits, of which the low 32 are kept: -1.5 gives 4294967295, a value beyond 64 bits 0.
inline std::uint32_t TruncateToUint32(double value) {
  return static_cast<std::uint32_t>(TruncateToInt64(value));
}

/// Truncated toward zero; negative values wrap. Values from 2^63 on go through the signed conversion with 2^63 taken
/// off and put back.
inline std::uint64_t TruncateToUint64(double value) {
  constexpr double kHalf = 9223372036854775808.0;  // 2^63
  constexpr std::uint64_t kHighBit = std::uint64_t{1} << 63U;
  if (value >= kHalf) return static_cast<std::uint64_t>(TruncateToInt64(value - kHalf)) ^ kHighBit;
  return static_cast<std::uint64_t>(TruncateToInt64(value));
}

}  // namespace zt::telemetry::collector::performancesamples
