#include "zt/shared/npu/npu_info.h"

#include <utility>

#include "machine_report.h"

namespace zt::shared::npu {

NPUInfo::NPUInfo() {
  MachineReport report = ReadMachineReport();
  report_ = std::move(report.json);
  status_ = report.status;
}

NPUInfo::~NPUInfo() = default;

const char* NPUInfo::GetNPUInfoAsJsonString() {
  return report_.c_str();
}

}  // namespace zt::shared::npu
