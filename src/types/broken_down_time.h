#pragma once

#include <chrono>
#include <ctime>

namespace zt::telemetry::collector::performancesamples {

/// Date and time of day of `time`, as the C library's formats take them. By the calendar of C++: the C library's own
/// conversion refuses years that stored samples and process lists can hold.
inline std::tm BrokenDownTime(std::chrono::sys_seconds time) {
  constexpr int kFirstYear = 1900;
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(time - day);
  std::tm fields{};
  fields.tm_year = static_cast<int>(date.year()) - kFirstYear;
  fields.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
  fields.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
  fields.tm_hour = static_cast<int>(clock.hours().count());
  fields.tm_min = static_cast<int>(clock.minutes().count());
  fields.tm_sec = static_cast<int>(clock.seconds().count());
  return fields;
}

}  // namespace zt::telemetry::collector::performancesamples
