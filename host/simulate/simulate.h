#pragma once

#include <ostream>

#include "host/command.h"

namespace zt::telemetry::host {

/// Has the collector sample a simulated laptop once an hour, over as many hours as `command` says; its hand-overs go
/// where the command says, by default as lines of JSON to `out`. Returns the exit code: failed when a collection
/// reported an error. Throws `Failure`.
int Simulate(const SimulateCommand& command, std::ostream& out, std::ostream& err);

}  // namespace zt::telemetry::host
