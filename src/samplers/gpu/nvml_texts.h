#pragma once

#include <cstdint>
#include <string>

#include "samplers/gpu/nvml_api.h"

namespace zt::telemetry::collector::performancesamples {

/// What NVIDIA's management library means by a status; empty for one that is not known.
std::string DescribeNvmlReturn(nvmlReturn_t status);

/// Why a card holds its clocks down. Empty for an unknown reason, and where several hold at once.
std::string DescribeThrottleReasons(std::uint64_t reasons);

}  // namespace zt::telemetry::collector::performancesamples
