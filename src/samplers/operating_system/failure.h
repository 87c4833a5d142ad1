#pragma once

#include <string>

namespace zt::telemetry::collector::performancesamples {

/// Ends the pass of the process sampler: throws a `std::exception*` whose text is `message`. The pointer instead of a
/// value is what makes the cycle log "Unknown exception type.". It stays valid, and the collector's own, until the
/// collector is unloaded: the one who catches it deletes nothing. One exception is kept for each text, so `message` is
/// one of a few fixed ones.
[[noreturn]] void FailWith(const std::string& message);

}  // namespace zt::telemetry::collector::performancesamples
