#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>
#include <system_error>

namespace zt::telemetry::collector::performancesamples {

/// The number of a process id's decimal text; absent for any other text.
inline std::optional<std::uint32_t> ProcessIdNumber(std::string_view text) {
  std::uint32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc{} && stop == end ? std::optional(number) : std::nullopt;
}

}  // namespace zt::telemetry::collector::performancesamples
