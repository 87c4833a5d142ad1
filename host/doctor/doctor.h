#pragma once

#include <ostream>

#include "host/command.h"
#include "host/doctor/report_view.h"

namespace zt::telemetry::host {

/// Asks every source of the machine once and shows what each says on `out`, or in the file that the command names, and
/// the lines of the log that are asked for on `err`. Returns the exit code: failed when a source that is there failed.
/// Throws `Failure` when nothing could be asked.
int Doctor(const DoctorCommand& command, std::ostream& out, std::ostream& err);

/// Asks every source as `command` says and shows what each says on `view`. True when none of them failed.
bool AskSources(const DoctorCommand& command, ReportView& view, std::ostream& err);

}  // namespace zt::telemetry::host
