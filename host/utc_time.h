#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace zt::telemetry::host {

/// A time in UTC: "2026-03-07", "2026-03-07T14:00", "2026-03-07T14:00:30", the latter two also with a blank for the "T"
/// and with a "Z" at the end. Nothing when the text is no such time, or no date of the calendar.
std::optional<std::chrono::sys_seconds> ParseUtcTime(std::string_view text);

/// "2026-03-07T14:00:30.000Z", as stored samples carry their time. Years 0 to 9999.
std::string FormatUtcTime(std::chrono::sys_seconds time);

}  // namespace zt::telemetry::host
