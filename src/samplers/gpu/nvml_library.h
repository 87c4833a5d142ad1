#pragma once

#include "samplers/gpu/nvml_api.h"

namespace zt::telemetry::collector::performancesamples {

/// Finds NVIDIA's management library at the first call and keeps it until the process ends: cards stay open, and starts
/// counted, from one pass to the next. Null where there is no library, or one without its four required functions; the
/// next call looks again, since a driver may be installed while the host runs.
const nvml::Functions* BindNvml();

}  // namespace zt::telemetry::collector::performancesamples
