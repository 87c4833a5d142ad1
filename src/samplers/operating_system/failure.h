#pragma once

#include <string>

namespace zt::telemetry::collector::performancesamples {

/// Ends the pass of the process sampler: throws a `std::exception*`, made with `new`, whose text is `message`. The
/// pointer instead of a value is what makes the cycle log "Unknown exception type."; the one who catches it deletes it,
/// as `Error::FromCurrentException` does.
[[noreturn]] void FailWith(const std::string& message);

}  // namespace zt::telemetry::collector::performancesamples
