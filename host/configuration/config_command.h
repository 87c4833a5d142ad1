#pragma once

#include <ostream>

#include "host/command.h"

namespace zt::telemetry::host {

/// Checks or shows the configuration, or prints a new key, on `out`. Returns the exit code; throws `Failure` with wrong
/// usage that tells all that is wrong in the file.
int ShowConfiguration(const ConfigCommand& command, std::ostream& out);

}  // namespace zt::telemetry::host
