#include "samplers/npu_msg.h"

namespace zt::telemetry::collector::performancesamples {

NPUMsg::NPUMsg(const PerfMessages& other) : PerfMessages(other) {}

NPUMsg::NPUMsg() = default;

void NPUMsg::PopulateStorageAndUploadProtos() {}

}  // namespace zt::telemetry::collector::performancesamples
