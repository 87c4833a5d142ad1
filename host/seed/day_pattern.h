#pragma once

#include <chrono>

namespace zt::telemetry::host {

inline constexpr int kMinutesPerHour = 60;

/// How busy the machine is at a time of the day, 0 (asleep) to 1, the same every day.
double LoadAt(std::chrono::sys_seconds time);

/// Whole minutes since midnight UTC.
int MinuteOfDay(std::chrono::sys_seconds time);

}  // namespace zt::telemetry::host
