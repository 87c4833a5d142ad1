#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

#include "simulation/calls.h"

/// What disturbed calls of the system's services give.
namespace zt::telemetry::collector::performancesamples::platform {

using simulation::Disturbance;

inline constexpr auto kRefusedByCom = static_cast<std::int32_t>(0x80070005);  // E_ACCESSDENIED
inline constexpr std::uint32_t kRefusedBySystem = 5;                          // ERROR_ACCESS_DENIED
inline constexpr std::size_t kAbsurdlyMany = 10'000;
inline constexpr std::uint32_t kAbsurdFigure = std::numeric_limits<std::uint32_t>::max();

}  // namespace zt::telemetry::collector::performancesamples::platform
