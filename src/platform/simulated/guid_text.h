#pragma once

#include <zt/text/wide_text.h>

#include <string>

namespace zt::simulation {

/// A profile's GUID as the platform writes GUIDs: in capitals.
inline std::wstring GuidText(const std::string& guid) {
  std::wstring text = text::ToWide(guid);
  for (wchar_t& character : text) {
    if (character >= L'a' && character <= L'z') character = static_cast<wchar_t>(character - L'a' + L'A');
  }
  return text;
}

}  // namespace zt::simulation
