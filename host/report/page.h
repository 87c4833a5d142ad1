#pragma once

#include <string>

#include "host/report/machines.h"

namespace zt::telemetry::host {

/// The report of one machine: a page that is whole in itself. `name` is what people call the machine, UTF-8, empty for
/// its serial number.
std::string ReportPage(const MachineRecords& machine, const std::string& name);

/// The records of a machine as the page's data, JSON that can stand in a script element.
std::string PageData(const MachineRecords& machine, const std::string& name);

}  // namespace zt::telemetry::host
