#pragma once

#include <ostream>

#include "host/command.h"

namespace zt::telemetry::host {

/// Shows the live record of a machine on the terminal, collected again and again, until its user ends it. Takes no
/// stored samples, and writes no file but the log that `command` names. Returns the exit code: failed when the last
/// collection failed. Throws `Failure` with wrong usage where there is no terminal, or for a machine or a plugin that
/// cannot be used.
int Watch(const WatchCommand& command, std::ostream& err);

}  // namespace zt::telemetry::host
