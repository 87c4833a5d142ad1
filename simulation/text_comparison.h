#pragma once

#include <algorithm>
#include <string_view>

namespace zt::simulation {

/// Whether two texts are the same apart from the case of the letters A to Z: that is how WMI and the registry compare
/// names.
inline bool EqualIgnoringCase(std::string_view left, std::string_view right) {
  constexpr auto kToLower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
  return std::ranges::equal(left, right, {}, kToLower, kToLower);
}

}  // namespace zt::simulation
