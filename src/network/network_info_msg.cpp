#include "network/network_info_msg.h"

namespace zt::telemetry::collector::performancesamples {

NetworkInfoMsg::NetworkInfoMsg(const PerfMessages& other) : PerfMessages(other) {}

NetworkInfoMsg::NetworkInfoMsg() = default;

void NetworkInfoMsg::PopulateStorageAndUploadProtos() {}

}  // namespace zt::telemetry::collector::performancesamples
