#pragma once

#include <chrono>
#include <cstdint>

namespace zt::telemetry::host {

/// How much an outbox keeps.
struct OutboxLimits {
  std::int64_t bytes = std::int64_t{256} * 1024 * 1024;
  std::chrono::days age{90};
};

}  // namespace zt::telemetry::host
