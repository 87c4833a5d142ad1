#pragma once

#include <ostream>

#include "host/command.h"

namespace zt::telemetry::host {

/// Shows the network of the machine on `out`, and what failed and the collector's log on `err`. Returns the exit code:
/// failed when a pass or a query of it failed. Throws `Failure` when nothing could be asked.
int Network(const NetworkCommand& command, std::ostream& out, std::ostream& err);

}  // namespace zt::telemetry::host
