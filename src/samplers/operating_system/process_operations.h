#pragma once

#include <memory>
#include <string>

#include "types/wmi_process_info.h"
#include "zt/shared/wmi/wmi_client.h"

namespace zt::telemetry::collector::performancesamples {

/// The query for the operation counts of `processes`, of which there is at least one.
std::wstring OperationsQuery(const ProcessList& processes);

/// The process of `table` that the current row of that query tells of, with its operation counts. A count that cannot
/// be read, or does not fit 32 bits, stays as it is: 0 unless an earlier row told it. Throws `Error` for a row without
/// an id, or whose process is not in the table.
std::shared_ptr<WMIProcessInfo> FindProcessOfRow(const shared::wmi::WMIClient& wmi, const ProcessTable& table);

/// Turns the figures of a listed process into the units of the record. A second time turns them once more: two rows of
/// one process leave it without a working set worth telling, and so out of the record.
void ConvertUnits(WMIProcessInfo& process);

}  // namespace zt::telemetry::collector::performancesamples
