#pragma once

#include "performance_samples_upload.pb.h"

namespace zt::telemetry::collector::performancesamples {

/// Fills the session: touch contacts (in the field of the input delay), whole minutes since the system started, and
/// whole minutes since the last input (in the field of the logon). Fails with a `std::exception*` when the last input
/// is not known; the touch contacts are set then.
void FillSession(
    contract::upload::log::PcLogPerformanceSamplesAsCDM_OperatingSystemInfo_OperatingSystemSession& session);

}  // namespace zt::telemetry::collector::performancesamples
