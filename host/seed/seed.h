#pragma once

#include <ostream>

#include "host/command.h"

namespace zt::telemetry::host {

/// Writes made-up samples as `command` says, and tells of its progress on `progress`. Throws `Failure`; the database is
/// then as it was.
void Seed(const SeedCommand& command, std::ostream& progress);

}  // namespace zt::telemetry::host
