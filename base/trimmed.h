#pragma once

#include <string_view>

namespace zt::base {

/// `text` without the characters at its ends that are blanks: which ones are, `is_blank` says of each.
template <typename IsBlank>
constexpr std::string_view TrimmedWhere(std::string_view text, const IsBlank& is_blank) {
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  return text;
}

/// `text` without those of its ends that are among `blanks`.
constexpr std::string_view Trimmed(std::string_view text, std::string_view blanks) {
  return TrimmedWhere(text, [blanks](char character) { return blanks.find(character) != std::string_view::npos; });
}

}  // namespace zt::base
