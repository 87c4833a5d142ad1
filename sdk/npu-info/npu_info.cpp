#include "zt/shared/npu/npu_info.h"

#include "machine_report.h"

namespace zt::shared::npu {

NPUInfo::NPUInfo() : report_(ReadMachineReport()) {}

NPUInfo::~NPUInfo() = default;

const char* NPUInfo::GetNPUInfoAsJsonString() {
  return report_.c_str();
}

}  // namespace zt::shared::npu
