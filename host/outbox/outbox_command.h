#pragma once

#include <ostream>

#include "host/command.h"

namespace zt::telemetry::host {

/// Where a command may speak.
struct Streams {
  std::ostream& out;
  std::ostream& err;
  std::ostream* terminal;  // shows how far long work is; null when nobody would see it
};

/// Does with an outbox what `command` says; what it tells goes to `out` unless the command names a file, which then is
/// written whole or not at all. Returns the exit code; throws `Failure` with wrong usage for an outbox, a hand-over or
/// a message that is not there.
int ShowOutbox(const OutboxCommand& command, const Streams& streams);

}  // namespace zt::telemetry::host
