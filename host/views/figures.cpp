#include "host/views/figures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

namespace zt::telemetry::host {

std::string GroupDigits(std::string_view number) {
  constexpr std::size_t kGroup = 3;
  const std::size_t start = number.starts_with('-') ? 1 : 0;
  const std::size_t end = std::min(number.find_first_not_of("0123456789", start), number.size());
  std::string result(number.substr(0, start));
  for (std::size_t i = start; i < end; ++i) {
    if (i > start && (end - i) % kGroup == 0) result += ',';
    result += number[i];
  }
  return result.append(number.substr(end));
}

std::string NumberText(double number) {
  if (!std::isfinite(number)) return std::to_string(number);
  std::array<char, std::numeric_limits<double>::max_exponent10 + 8> text{};
  std::snprintf(text.data(), text.size(), "%.2f", number);
  std::string digits = text.data();
  while (digits.ends_with('0')) digits.pop_back();
  if (digits.ends_with('.')) digits.pop_back();
  return GroupDigits(digits == "-0" ? "0" : digits);
}

std::string MinutesText(double minutes) {
  constexpr double kHour = 60;
  constexpr double kDay = 24 * kHour;
  if (!std::isfinite(minutes) || minutes < kHour) return NumberText(minutes) + " min";
  std::string result;
  if (minutes >= kDay) result = NumberText(std::floor(minutes / kDay)) + " d ";
  result += NumberText(std::floor(std::fmod(minutes, kDay) / kHour)) + " h ";
  return result + NumberText(std::floor(std::fmod(minutes, kHour))) + " min";
}

std::string KibibytesText(double kibibytes) {
  constexpr double kStep = 1024;
  const std::string plain = NumberText(kibibytes) + " kB";
  if (kibibytes >= kStep * kStep) return plain + " (" + NumberText(kibibytes / (kStep * kStep)) + " GiB)";
  if (kibibytes >= kStep) return plain + " (" + NumberText(kibibytes / kStep) + " MiB)";
  return plain;
}

std::string BytesText(double bytes) {
  constexpr double kStep = 1000;
  constexpr std::array kUnits = {" B", " kB", " MB", " GB", " TB"};
  std::size_t unit = 0;
  for (; bytes >= kStep && unit + 1 < kUnits.size(); ++unit) bytes /= kStep;
  return NumberText(bytes) + kUnits[unit];
}

}  // namespace zt::telemetry::host
