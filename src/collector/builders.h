#pragma once

#include <memory>
#include <vector>

#include "messages/perf_messages.h"

namespace zt::telemetry::collector::performancesamples {

using BuilderList = std::vector<std::shared_ptr<PerfMessages>>;

/// The sample builders of one cycle, in the order in which they run. They use the cycle's clients, which outlive them.
BuilderList MakeBuilders(shared::wmi::WMIClient& wmi, shared::ztbios::PrivateBiosWmi& bios);

}  // namespace zt::telemetry::collector::performancesamples
