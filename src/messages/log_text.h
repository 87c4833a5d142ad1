#pragma once

#include <string>

namespace zt::telemetry::collector::performancesamples {

/// `text` (UTF-8) as a log statement takes it, for texts that may hold more than ASCII: where plog's messages are wide
/// texts it reads a plain `char` text in the code page of the system.
inline const char8_t* LogText(const std::string& text) {
  return reinterpret_cast<const char8_t*>(text.c_str());
}

}  // namespace zt::telemetry::collector::performancesamples
