#pragma once

#include <ostream>

#include "host/command.h"

namespace zt::telemetry::host {

/// Does with an outbox what `command` says; what it tells goes to `out` unless the command names a file. Returns the
/// exit code; throws `Failure` with wrong usage for an outbox, a hand-over or a message that is not there.
int ShowOutbox(const OutboxCommand& command, std::ostream& out);

}  // namespace zt::telemetry::host
