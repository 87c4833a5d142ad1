#pragma once

#include <charconv>
#include <cstdint>
#include <string_view>

namespace zt::telemetry::collector::performancesamples {

/// The number that the leading decimal digits of `text` write; 0 without such digits, and for one beyond 2,147,483,647.
inline std::uint32_t DecimalNumber(std::string_view text) {
  std::int32_t number = 0;
  const bool begins_with_digit = !text.empty() && text.front() >= '0' && text.front() <= '9';
  // Leaves the number as it is where it is out of range.
  if (begins_with_digit) std::from_chars(text.data(), text.data() + text.size(), number);
  return static_cast<std::uint32_t>(number);
}

}  // namespace zt::telemetry::collector::performancesamples
