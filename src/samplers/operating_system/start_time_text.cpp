#include "samplers/operating_system/start_time_text.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <ctime>

#include "platform/clock.h"
#include "types/broken_down_time.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;

constexpr std::int64_t kUnitsPerSecond = 10'000'000;

// A day is left for the zone's offset.
constexpr sys_seconds kEndOfWmiCalendar = sys_days{std::chrono::year(9999) / 12 / 31};

std::string WallClockText(const std::tm& fields) {
  std::array<char, sizeof "9999-12-31T23:59:59"> text{};
  const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &fields);
  return {text.data(), length};
}

std::string TwoDigits(int number) {
  return {static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
}

std::string OffsetText(const std::tm& local, const std::tm& utc) {
  const int hour_difference = local.tm_hour - utc.tm_hour;
  const int minute_difference = local.tm_min - utc.tm_min;
  return (hour_difference < 0 ? "-" : "+") + TwoDigits(std::abs(hour_difference)) + ":" +
         TwoDigits(std::abs(minute_difference));
}

}  // namespace

std::string StartTimeText(std::int64_t created_100ns) {
  const sys_seconds utc{seconds(created_100ns / kUnitsPerSecond)};
  if (created_100ns < 0 || utc >= kEndOfWmiCalendar) return {};
  const sys_seconds local = utc + minutes(platform::LocalOffsetMinutes(utc.time_since_epoch().count()));
  const std::tm local_fields = BrokenDownTime(local);
  return WallClockText(local_fields) + OffsetText(local_fields, BrokenDownTime(utc));
}

}  // namespace zt::telemetry::collector::performancesamples
