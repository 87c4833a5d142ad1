#pragma once

#include "npu_report.h"
#include "windows/kernel_calls.h"

namespace zt::shared::npu {

/// Adds what the graphics kernel tells of the adapter at this moment: temperature, clocks, memory in use. What it does
/// not tell, or a call that fails or is missing, leaves the figure as it is.
void ReadKernelFigures(const kernel::Calls& calls, const LUID& luid, Npu& npu);

}  // namespace zt::shared::npu
