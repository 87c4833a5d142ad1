#include "samplers/fans_info_msg.h"

namespace zt::telemetry::collector::performancesamples {

FansInfoMsg::FansInfoMsg(const PerfMessages& other) : PerfMessages(other) {}

FansInfoMsg::FansInfoMsg() = default;

void FansInfoMsg::PopulateStorageAndUploadProtos() {}

}  // namespace zt::telemetry::collector::performancesamples
