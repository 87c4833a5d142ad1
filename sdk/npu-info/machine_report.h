#pragma once

#include <string>

namespace zt::shared::npu {

/// The report of this machine's NPUs, as `NPUInfo` gives it.
std::string ReadMachineReport();

}  // namespace zt::shared::npu
