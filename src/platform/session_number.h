#pragma once

#include <cstdint>
#include <optional>

namespace zt::telemetry::collector::performancesamples::platform {

/// The session that services run in, where no user is.
inline constexpr std::uint32_t kSessionOfServices = 0;

/// The number of the session that this process runs in (`ProcessIdToSessionId`); absent when the call fails.
std::optional<std::uint32_t> SessionNumber();

}  // namespace zt::telemetry::collector::performancesamples::platform
