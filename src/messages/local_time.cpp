#include "messages/local_time.h"

#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iomanip>
#include <locale>
#include <new>
#include <regex>
#include <sstream>
#include <stdexcept>
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

// Named locales are missing from some C++ runtimes; the classic one prints the formats of this file alike.
std::locale MakeRecordLocale() {
  try {
    return std::locale("en_US");
  } catch (const std::runtime_error&) {
    return std::locale::classic();
  }
}

// Made once: looking a locale up by name reads files.
const std::locale& RecordLocale() {
  static const std::locale locale = MakeRecordLocale();
  return locale;
}

std::string WallClockText(sys_seconds local_time) {
  const std::tm calendar = BrokenDownTime(local_time);
  if (calendar.tm_year < 0) return {};
  std::ostringstream text;
  text.imbue(RecordLocale());
  text << std::put_time(&calendar, "%Y-%m-%dT%H:%M:%S");
  // A stream keeps quiet when there is no memory, and has half of a text.
  if (!text) throw std::bad_alloc();
  return text.str();
}

std::string OffsetText(std::int32_t offset_minutes) {
  const int hours = offset_minutes / kMinutesPerHour;
  char text[sizeof "+00:00"];
  std::snprintf(text, sizeof text, "%c%02d:00", hours < 0 ? '-' : '+', std::abs(hours) % 100);
  return text;
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
  static const std::regex kOffsetForm(R"(\d{4}-\d{2}-\d{2}T\d{2}:\d{2}:\d{2}(\+|\-)\d{2}:\d{2})");
  if (!std::regex_match(offset_form, kOffsetForm)) return {};
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
