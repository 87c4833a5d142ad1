#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zt::telemetry::collector::performancesamples::platform {

/// The system's text for an error code or HRESULT (`FormatMessageW`), its line end included, in the system's language
/// and UTF-8; absent where it has none, or one of 2018 characters and more.
std::optional<std::string> SystemMessage(std::int32_t code);

}  // namespace zt::telemetry::collector::performancesamples::platform
