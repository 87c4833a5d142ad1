#pragma once

#include <cstdint>
#include <optional>

/// The system's power status.
namespace zt::telemetry::collector::performancesamples::platform {

/// The battery flag of `GetSystemPowerStatus`: 1 high, 2 low, 4 critical, 8 charging, 128 no battery, 255 unknown, and
/// sums of these. Absent when the system does not answer.
std::optional<std::uint8_t> BatteryFlag();

}  // namespace zt::telemetry::collector::performancesamples::platform
