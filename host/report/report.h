#pragma once

#include <ostream>

#include "host/command.h"

namespace zt::telemetry::host {

/// Writes the report of each machine whose records `command` names, and tells on `out` what was written, on `err` what
/// could not be read. Returns the exit code: failed when something could not be read, although the rest is in the
/// report. Throws `Failure`: with wrong usage for an input or an output that cannot be used, as failed where there is
/// no record to report.
int Report(const ReportCommand& command, std::ostream& out, std::ostream& err);

}  // namespace zt::telemetry::host
