#include "host/utc_time.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <system_error>

namespace zt::telemetry::host {
namespace {

namespace chrono = std::chrono;

// Takes exactly `digits` digits from the front of `text`.
std::optional<unsigned> TakeNumber(std::string_view& text, std::size_t digits) {
  if (text.size() < digits) return std::nullopt;
  unsigned value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + digits, value);
  if (error != std::errc() || end != text.data() + digits) return std::nullopt;
  text.remove_prefix(digits);
  return value;
}

bool Take(std::string_view& text, std::string_view any_of) {
  if (text.empty() || any_of.find(text.front()) == std::string_view::npos) return false;
  text.remove_prefix(1);
  return true;
}

std::optional<chrono::sys_days> TakeDate(std::string_view& text) {
  const auto year = TakeNumber(text, 4);
  if (!year || !Take(text, "-")) return std::nullopt;
  const auto month = TakeNumber(text, 2);
  if (!month || !Take(text, "-")) return std::nullopt;
  const auto day = TakeNumber(text, 2);
  if (!day) return std::nullopt;
  const chrono::year_month_day date{chrono::year{static_cast<int>(*year)}, chrono::month{*month}, chrono::day{*day}};
  if (!date.ok()) return std::nullopt;
  return chrono::sys_days(date);
}

std::optional<chrono::seconds> TakeTimeOfDay(std::string_view& text) {
  const auto hour = TakeNumber(text, 2);
  if (!hour || *hour > 23 || !Take(text, ":")) return std::nullopt;
  const auto minute = TakeNumber(text, 2);
  if (!minute || *minute > 59) return std::nullopt;
  unsigned second = 0;
  if (Take(text, ":")) {
    const auto found = TakeNumber(text, 2);
    if (!found || *found > 59) return std::nullopt;
    second = *found;
  }
  return chrono::hours(*hour) + chrono::minutes(*minute) + chrono::seconds(second);
}

}  // namespace

std::optional<chrono::sys_seconds> ParseUtcTime(std::string_view text) {
  const auto date = TakeDate(text);
  if (!date) return std::nullopt;
  if (text.empty()) return *date;
  if (!Take(text, "T ")) return std::nullopt;
  const auto time_of_day = TakeTimeOfDay(text);
  if (!time_of_day) return std::nullopt;
  Take(text, "Z");
  if (!text.empty()) return std::nullopt;
  return *date + *time_of_day;
}

std::string FormatUtcTime(chrono::sys_seconds time) {
  const auto day = chrono::floor<chrono::days>(time);
  const chrono::year_month_day date(day);
  const chrono::hh_mm_ss time_of_day(time - day);
  constexpr std::size_t kLongest = 64;
  std::array<char, kLongest> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d.000Z", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(time_of_day.hours().count()), static_cast<int>(time_of_day.minutes().count()),
                static_cast<int>(time_of_day.seconds().count()));
  return text.data();
}

}  // namespace zt::telemetry::host
