#pragma once

#include <chrono>
#include <cstdint>
#include <ratio>

#include "simulation/reader/value.h"

namespace zt::simulation::reader {

/// Ticks of the system's file times.
using FileTicks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;

/// Reads a moment "2026-03-07T14:20:42Z" from 1970 to 9999 as the time since 1970; with `most_fraction_digits` above 0
/// also with that many digits of a fraction ("…42.5Z", at most 7).
FileTicks ReadMoment(const Value& value, std::size_t most_fraction_digits);

}  // namespace zt::simulation::reader
