#pragma once

#include <cstdint>
#include <string>

namespace zt::shared::npu {

/// What the system tells of this machine's NPUs, as `NPUInfo` gives it.
struct MachineReport {
  std::string json;         // empty without NPUs
  std::int32_t status = 0;  // the HRESULT of the first call that failed where the system may know more NPUs
};

MachineReport ReadMachineReport();

}  // namespace zt::shared::npu
