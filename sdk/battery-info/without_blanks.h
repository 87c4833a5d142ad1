#pragma once

#include <string>
#include <string_view>

namespace zt::shared::battery {

/// `text` without the blanks around it, with which drivers and firmware fill up fixed lengths.
inline std::string WithoutBlanks(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return std::string(text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin));
}

}  // namespace zt::shared::battery
