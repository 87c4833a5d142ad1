#pragma once

#include <string>
#include <string_view>

#include "base/trimmed.h"

namespace zt::shared::battery {

/// `text` without the blanks around it, with which drivers and firmware fill up fixed lengths.
inline std::string WithoutBlanks(std::string_view text) {
  return std::string(base::Trimmed(text, " \t\r\n"));
}

}  // namespace zt::shared::battery
