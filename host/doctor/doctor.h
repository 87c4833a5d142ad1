#pragma once

#include <ostream>

#include "host/command.h"

namespace zt::telemetry::host {

/// Asks every source of the machine once and shows what each says on `out`. Returns the exit code: failed when a source
/// that is there failed. Throws `Failure` when nothing could be asked.
int Doctor(const DoctorCommand& command, std::ostream& out);

}  // namespace zt::telemetry::host
