#include "messages/local_time.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string_view>

#include "platform/clock.h"
#include "types/broken_down_time.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using std::chrono::days;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;

constexpr int kMinutesPerHour = 60;
constexpr int kSecondsPerMinute = 60;
constexpr int kFirstYear = 1900;

// Moments whose local calendar can be computed, whatever the zone.
constexpr sys_seconds kFirstMoment = sys_days{std::chrono::year(kFirstYear - 1) / 12 / 31};
constexpr sys_seconds kEndOfCalendar = sys_days{std::chrono::year::max() / 12 / 31};

// Written digit by digit: `std::put_time` asks the C library under a locale that is set for the whole process
// meanwhile, and libstdc++ on Windows ends the process where there is no memory to remember the old one.
std::string WallClockText(sys_seconds local_time) {
  const std::tm calendar = BrokenDownTime(local_time);
  if (calendar.tm_year < 0) return {};
  constexpr std::size_t kLongest = 80;  // six numbers of any size, and what stands between them
  char text[kLongest];
  std::snprintf(text, sizeof text, "%d-%02d-%02dT%02d:%02d:%02d", kFirstYear + calendar.tm_year, calendar.tm_mon + 1,
                calendar.tm_mday, calendar.tm_hour, calendar.tm_min, calendar.tm_sec);
  return text;
}

std::string OffsetText(std::int32_t offset_minutes) {
  const int hours = offset_minutes / kMinutesPerHour;
  char text[sizeof "+00:00"];
  std::snprintf(text, sizeof text, "%c%02d:00", hours < 0 ? '-' : '+', std::abs(hours) % 100);
  return text;
}

// Compared sign by sign, since a `std::regex` of libstdc++ whose making was short of memory may say nothing of it, and
// refuse every text from then on.
bool HasOffsetForm(std::string_view text) {
  constexpr std::string_view kForm = "0000-00-00T00:00:00+00:00";
  return std::equal(text.begin(), text.end(), kForm.begin(), kForm.end(), [](char sign, char form) {
    if (form == '0') return sign >= '0' && sign <= '9';
    return sign == form || (sign == '-' && form == '+');
  });
}

// The number that `text` holds at `position` in `length` digits.
int DigitsAt(std::string_view text, std::size_t position, std::size_t length) {
  int number = 0;
  std::from_chars(text.data() + position, text.data() + position + length, number);
  return number;
}

}  // namespace

std::string OffsetForm(std::int64_t utc_seconds) {
  const sys_seconds utc{seconds(utc_seconds)};
  if (utc < kFirstMoment || utc >= kEndOfCalendar) return {};
  const sys_seconds local = utc + seconds(platform::LocalOffsetMinutes(utc_seconds) * kSecondsPerMinute);
  const std::string wall_clock = WallClockText(local);
  return wall_clock.empty() ? wall_clock : wall_clock + OffsetText(platform::StandardOffsetMinutes(utc_seconds));
}

std::string CurrentOffsetForm() {
  return OffsetForm(platform::CurrentTime());
}

std::string RecordForm(const std::string& offset_form) {
  if (!HasOffsetForm(offset_form)) return {};
  const int year = DigitsAt(offset_form, 0, 4);
  const int month = DigitsAt(offset_form, 5, 2);
  const int day = DigitsAt(offset_form, 8, 2);
  const int hour = DigitsAt(offset_form, 11, 2);
  const int minute = DigitsAt(offset_form, 14, 2);
  const int second = DigitsAt(offset_form, 17, 2);
  // The ranges of calendar fields, leap seconds included; a day that its month lacks counts on into the next month.
  const bool valid = year >= kFirstYear && month >= 1 && month <= 12 && day >= 1 && day <= 31 && hour < 24 &&
                     minute < 60 && second < 62;
  if (!valid) return {};
  const sys_days first_of_month{std::chrono::year(year) / month / 1};
  const sys_seconds time =
      first_of_month + days(day - 1) + std::chrono::hours(hour) + std::chrono::minutes(minute) + seconds(second);
  return WallClockText(time) + ".000Z";
}

std::string CurrentRecordForm() {
  return RecordForm(CurrentOffsetForm());
}

}  // namespace zt::telemetry::collector::performancesamples
