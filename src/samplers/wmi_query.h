#pragma once

#include <cstdint>
#include <string>

namespace zt::telemetry::collector::performancesamples {

/// Throws `Error` (kind 5) with `status` as code and `description` as text when a query's status tells of a failure.
void RequireSuccess(std::int32_t status, const std::string& description);

}  // namespace zt::telemetry::collector::performancesamples
