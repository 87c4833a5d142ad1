#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// The firmware's answer to `PerfMessages::GetThermalDataFromPrivateBiosWmi`.
namespace zt::telemetry::collector::performancesamples {

using ThermalReply = std::array<std::uint8_t, 128>;

/// The selector that asks for the temperatures.
inline constexpr int kThermalReadings = 1;

/// Where they stand in the reply: first how many there are, then that of the graphics, whole degrees Celsius.
inline constexpr std::size_t kReadingCount = 0;
inline constexpr std::size_t kGraphicsReading = 1;

}  // namespace zt::telemetry::collector::performancesamples
