#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace zt::telemetry::fleet {

/// "2026-03-07T14:20:42" of a wall clock.
std::string WallClockText(std::chrono::sys_seconds local);

/// The identity of a live record.
std::string LiveId(const std::string& serial, std::string_view local_time);
/// The identity of an hourly record; `suffix` is "-TH" or "-NE".
std::string HourlyId(std::chrono::sys_seconds hour, const std::string& serial, std::string_view suffix);

/// "-02:00"
std::string ZoneText(std::chrono::minutes zone);

}  // namespace zt::telemetry::fleet
