#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>

namespace zt::telemetry::collector::performancesamples::platform {

/// As `SystemMessage`, in a language that the system has texts in; 0 for its own.
std::optional<std::string> SystemMessageIn(LANGID language, std::int32_t code);

}  // namespace zt::telemetry::collector::performancesamples::platform
