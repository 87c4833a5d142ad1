#pragma once

#include "types/wmi_process_info.h"
#include "zt/shared/wmi/wmi_client.h"

namespace zt::telemetry::collector::performancesamples {

/// The processes of WMI's performance data whose load is above 0, by their id, with their processor time and working
/// set in the system's units. A process that cannot be opened or measured is left out, as is one whose id is no number;
/// of several with the same id the last one counts. Fails with a `std::exception*` when the query fails,
/// as it does without a client (null).
ProcessTable ListProcesses(shared::wmi::WMIClient* wmi);

/// At most ten processes with the highest load, highest first.
ProcessList BusiestOf(const ProcessTable& table);

}  // namespace zt::telemetry::collector::performancesamples
