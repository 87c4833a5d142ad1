#include "simulation/reader/time_text.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace zt::simulation::reader {
namespace {

constexpr std::string_view kForm = "0000-00-00T00:00:00";  // 0 stands for any digit
constexpr std::size_t kTickDigits = 7;
constexpr int kFirstYear = 1970;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool HasForm(std::string_view text) {
  return std::equal(text.begin(), text.end(), kForm.begin(), kForm.end(),
                    [](char c, char form) { return form == '0' ? IsDigit(c) : c == form; });
}

int NumberAt(std::string_view text, std::size_t begin, std::size_t length) {
  int number = 0;
  std::from_chars(text.data() + begin, text.data() + begin + length, number);
  return number;
}

std::optional<FileTicks> SecondsOf(std::string_view text) {
  if (!HasForm(text)) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year{NumberAt(text, 0, 4)},
                                         std::chrono::month{static_cast<unsigned>(NumberAt(text, 5, 2))},
                                         std::chrono::day{static_cast<unsigned>(NumberAt(text, 8, 2))}};
  const int hour = NumberAt(text, 11, 2);
  const int minute = NumberAt(text, 14, 2);
  const int second = NumberAt(text, 17, 2);
  const bool valid =
      date.ok() && date.year() >= std::chrono::year{kFirstYear} && hour < 24 && minute < 60 && second < 60;
  if (!valid) return std::nullopt;
  return std::chrono::sys_days{date}.time_since_epoch() + std::chrono::hours{hour} + std::chrono::minutes{minute} +
         std::chrono::seconds{second};
}

std::optional<FileTicks> FractionOf(std::string_view text, std::size_t most_digits) {
  if (text.empty()) return FileTicks{0};
  text.remove_prefix(1);
  const bool valid = !text.empty() && text.size() <= most_digits && std::all_of(text.begin(), text.end(), IsDigit);
  if (!valid) return std::nullopt;
  std::string digits(text);
  digits.resize(kTickDigits, '0');
  return FileTicks{NumberAt(digits, 0, kTickDigits)};
}

std::optional<FileTicks> ParseMoment(std::string_view text, std::size_t most_fraction_digits) {
  if (text.size() <= kForm.size() || text.back() != 'Z') return std::nullopt;
  text.remove_suffix(1);
  const std::string_view fraction = text.substr(kForm.size());
  if (!fraction.empty() && fraction.front() != '.') return std::nullopt;
  const std::optional<FileTicks> seconds = SecondsOf(text.substr(0, kForm.size()));
  const std::optional<FileTicks> rest = FractionOf(fraction, std::min(most_fraction_digits, kTickDigits));
  return seconds && rest ? std::optional(*seconds + *rest) : std::nullopt;
}

}  // namespace

FileTicks ReadMoment(const Value& value, std::size_t most_fraction_digits) {
  std::optional<FileTicks> moment;
  if (value.ToJson().is_string()) {
    moment = ParseMoment(value.ToJson().get_ref<const std::string&>(), most_fraction_digits);
  }
  if (!moment) value.FailExpecting("a moment from 1970 on in UTC such as \"2026-03-07T14:20:42Z\"");
  return *moment;
}

}  // namespace zt::simulation::reader
