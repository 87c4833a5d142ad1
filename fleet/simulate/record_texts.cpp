#include "fleet/simulate/record_texts.h"

#include <array>
#include <cstdio>
#include <cstdlib>

namespace zt::telemetry::fleet {
namespace {

namespace chrono = std::chrono;

constexpr std::size_t kLongestId = 30;
constexpr std::size_t kHourLength = 13;  // "2026-03-07T14"

void AppendDigits(std::string& text, unsigned number, int digits) {
  constexpr unsigned kTen = 10;
  unsigned place = 1;
  for (int i = 1; i < digits; ++i) place *= kTen;
  for (; place > 0; place /= kTen) text += static_cast<char>('0' + number / place % kTen);
}

}  // namespace

std::string WallClockText(chrono::sys_seconds local) {
  const auto day = chrono::floor<chrono::days>(local);
  const chrono::year_month_day date(day);
  const chrono::hh_mm_ss time(local - day);
  std::string text;
  text.reserve(sizeof("2026-03-07T14:20:42.000Z"));
  AppendDigits(text, static_cast<unsigned>(static_cast<int>(date.year())), 4);
  AppendDigits(text.append("-"), static_cast<unsigned>(date.month()), 2);
  AppendDigits(text.append("-"), static_cast<unsigned>(date.day()), 2);
  AppendDigits(text.append("T"), static_cast<unsigned>(time.hours().count()), 2);
  AppendDigits(text.append(":"), static_cast<unsigned>(time.minutes().count()), 2);
  AppendDigits(text.append(":"), static_cast<unsigned>(time.seconds().count()), 2);
  return text;
}

std::string LiveId(const std::string& serial, std::string_view local_time) {
  return (serial + "_" + std::string(local_time)).substr(0, kLongestId);
}

std::string HourlyId(chrono::sys_seconds hour, const std::string& serial, std::string_view suffix) {
  return (WallClockText(hour).substr(0, kHourLength) + "H_" + serial + std::string(suffix)).substr(0, kLongestId);
}

std::string ZoneText(chrono::minutes zone) {
  constexpr int kMinutesOfHour = 60;
  const auto minutes = static_cast<int>(zone.count());
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "%c%02d:%02d", minutes < 0 ? '-' : '+', std::abs(minutes) / kMinutesOfHour,
                std::abs(minutes) % kMinutesOfHour);
  return text.data();
}

}  // namespace zt::telemetry::fleet
