#pragma once

#include <ostream>

#include "host/command.h"

namespace zt::telemetry::host {

/// Runs the collector as `command` says. Hand-overs go to `out` unless the command names a file; the log and what else
/// there is to say go to `err`. Returns the exit code; throws `Failure` when nothing could be run.
int Collect(const CollectCommand& command, std::ostream& out, std::ostream& err);

}  // namespace zt::telemetry::host
