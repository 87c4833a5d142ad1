#pragma once

#include <utf8.h>

#include <iterator>
#include <string>
#include <string_view>

namespace zt::text {

/// `text` (UTF-16 where wchar_t has 16 bits, UTF-32 elsewhere) as UTF-8; what is no character becomes U+FFFD.
inline std::string ToUtf8(std::wstring_view text) {
  constexpr char32_t kReplacement = 0xFFFD;
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    auto character = static_cast<char32_t>(text[i]);
    const bool leads = character >= 0xD800 && character < 0xDC00;
    if (leads && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000) {
      character = 0x10000 + ((character - 0xD800) << 10) + (static_cast<char32_t>(text[++i]) - 0xDC00);
    }
    const bool valid = character < 0xD800 || (character >= 0xE000 && character <= 0x10FFFF);
    utf8::append(valid ? character : kReplacement, std::back_inserter(result));
  }
  return result;
}

/// UTF-8 as the system's wide text; what is no character becomes U+FFFD.
inline std::wstring ToWide(std::string_view text) {
  std::string valid;
  utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(valid));
  std::wstring result;
  if constexpr (sizeof(wchar_t) == 2) {
    // coverage: for wide characters of 16 bits, which Windows has
    utf8::utf8to16(valid.begin(), valid.end(), std::back_inserter(result));
  } else {
    utf8::utf8to32(valid.begin(), valid.end(), std::back_inserter(result));
  }
  return result;
}

}  // namespace zt::text
