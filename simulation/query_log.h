#pragma once

#include <optional>
#include <string>

#include "simulation/machine.h"

namespace zt::simulation {

/// Notes that `wql` runs on the current machine. Returns the failure that the machine's `wmi.failures` hold for this
/// execution: that of the first entry, in their order, that is due.
std::optional<Failure> RecordQuery(const std::string& wql);

}  // namespace zt::simulation
