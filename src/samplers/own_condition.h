#pragma once

#include <cstdint>

namespace zt::telemetry::collector::performancesamples {

/// The code of an `Error` that a sampler throws for a condition of its own, where no call has given a status.
inline constexpr std::int64_t kOwnCondition = -1;

}  // namespace zt::telemetry::collector::performancesamples
