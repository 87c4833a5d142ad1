#pragma once

#include <cstdint>
#include <optional>

/// The tick count of the system, and what it knows of the user at it.
namespace zt::telemetry::collector::performancesamples::platform {

/// Milliseconds since the system started (`GetTickCount64`).
std::uint64_t TickCountMs();

/// Touch contacts that the system's digitizers can tell apart, 0 without any (`GetSystemMetrics(SM_MAXIMUMTOUCHES)`).
std::uint32_t MaximumTouches();

/// The tick count at the last input of the user, its low 32 bits (`GetLastInputInfo`); absent when the call fails.
std::optional<std::uint32_t> LastInputTickMs();

}  // namespace zt::telemetry::collector::performancesamples::platform
