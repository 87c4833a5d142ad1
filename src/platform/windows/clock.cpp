#include "platform/clock.h"

#include <windows.h>

#include <algorithm>
#include <chrono>

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

constexpr std::int64_t kTicksPerSecond = 10'000'000;  // a FILETIME counts 100 ns
constexpr std::int64_t kTicksPerMinute = 60 * kTicksPerSecond;
constexpr std::int64_t kUnixEpochSeconds = 11'644'473'600;  // 1970-01-01, counted from FILETIME's 1601-01-01

// Moments outside are taken as the nearest one inside. A day is left at both ends for the zone's offset; calendar dates
// of the system end with the year 30827.
constexpr std::int64_t kSecondsPerDay = 86'400;
constexpr std::int64_t kFirstMoment = -kUnixEpochSeconds + kSecondsPerDay;
constexpr std::int64_t kLastMoment = 910'670'515'199 - kSecondsPerDay;

SYSTEMTIME ToCalendar(std::int64_t utc_seconds) {
  const std::int64_t moment = std::clamp(utc_seconds, kFirstMoment, kLastMoment);
  const auto ticks = static_cast<std::uint64_t>((moment + kUnixEpochSeconds) * kTicksPerSecond);
  const FILETIME file_time{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32U)};
  SYSTEMTIME calendar{};
  ::FileTimeToSystemTime(&file_time, &calendar);
  return calendar;
}

std::int64_t ToTicks(const SYSTEMTIME& calendar) {
  FILETIME file_time{};
  ::SystemTimeToFileTime(&calendar, &file_time);
  return static_cast<std::int64_t>(std::uint64_t{file_time.dwHighDateTime} << 32U | file_time.dwLowDateTime);
}

// What all years have in common: the zone as it is set now.
TIME_ZONE_INFORMATION RulesOfToday(const DYNAMIC_TIME_ZONE_INFORMATION& zone) {
  TIME_ZONE_INFORMATION rules{};
  rules.Bias = zone.Bias;
  rules.StandardBias = zone.StandardBias;
  rules.StandardDate = zone.StandardDate;
  rules.DaylightBias = zone.DaylightBias;
  rules.DaylightDate = zone.DaylightDate;
  return rules;
}

TIME_ZONE_INFORMATION RulesOfYear(WORD year) {
  DYNAMIC_TIME_ZONE_INFORMATION zone{};
  ::GetDynamicTimeZoneInformation(&zone);
  TIME_ZONE_INFORMATION rules{};
  // A zone that the system has no table of is known as it is today only.
  if (::GetTimeZoneInformationForYear(year, &zone, &rules) == FALSE) rules = RulesOfToday(zone);
  if (zone.DynamicDaylightTimeDisabled != FALSE) rules.DaylightDate = rules.StandardDate = {};
  return rules;
}

SYSTEMTIME ToLocal(const SYSTEMTIME& utc, const TIME_ZONE_INFORMATION& rules) {
  SYSTEMTIME local = utc;
  ::SystemTimeToTzSpecificLocalTime(&rules, &utc, &local);
  return local;
}

// The zone's rules in force at a moment: those of the year that it is there, which is not UTC's at the turn of the
// year.
TIME_ZONE_INFORMATION RulesAt(const SYSTEMTIME& utc) {
  const TIME_ZONE_INFORMATION rules = RulesOfYear(utc.wYear);
  const WORD local_year = ToLocal(utc, rules).wYear;
  return local_year == utc.wYear ? rules : RulesOfYear(local_year);
}

}  // namespace

std::int64_t CurrentTime() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::floor<std::chrono::seconds>(now).count();
}

std::int32_t LocalOffsetMinutes(std::int64_t utc_seconds) {
  const SYSTEMTIME utc = ToCalendar(utc_seconds);
  const SYSTEMTIME local = ToLocal(utc, RulesAt(utc));
  return static_cast<std::int32_t>((ToTicks(local) - ToTicks(utc)) / kTicksPerMinute);
}

std::int32_t StandardOffsetMinutes(std::int64_t utc_seconds) {
  const TIME_ZONE_INFORMATION rules = RulesAt(ToCalendar(utc_seconds));
  // The system counts the minutes to be added to local time to get UTC.
  return -(rules.Bias + rules.StandardBias);
}

}  // namespace zt::telemetry::collector::performancesamples::platform
