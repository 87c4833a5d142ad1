#pragma once

#include <ostream>

#include "host/command.h"

namespace zt::telemetry::host {

/// Writes made-up samples as `command` says, and tells on `err` what it has written. Throws `Failure`; the database is
/// then as it was. `terminal` shows how far it is, and may be null.
void Seed(const SeedCommand& command, std::ostream& err, std::ostream* terminal);

}  // namespace zt::telemetry::host
