#pragma once

#include <ostream>

#include "host/command.h"

namespace zt::telemetry::host {

/// Asks every source of the machine once and shows what each says on `out`, and the lines of the log that are asked for
/// on `err`. Returns the exit code: failed when a source that is there failed. Throws `Failure` when nothing could be
/// asked.
int Doctor(const DoctorCommand& command, std::ostream& out, std::ostream& err);

}  // namespace zt::telemetry::host
