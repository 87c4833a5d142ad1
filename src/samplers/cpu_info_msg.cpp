#include "samplers/cpu_info_msg.h"

namespace zt::telemetry::collector::performancesamples {

CPUInfoMsg::CPUInfoMsg(const PerfMessages& other) : PerfMessages(other) {}

CPUInfoMsg::CPUInfoMsg() = default;

void CPUInfoMsg::PopulateStorageAndUploadProtos() {}

}  // namespace zt::telemetry::collector::performancesamples
