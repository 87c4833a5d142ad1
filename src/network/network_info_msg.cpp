#include "network/network_info_msg.h"

namespace zt::telemetry::collector::performancesamples {

NetworkInfoMsg::NetworkInfoMsg(shared::wmi::WMIClient* wmi_client, SampleRows* rows)
    : PerfMessages(wmi_client), rows_(rows) {}

NetworkInfoMsg::NetworkInfoMsg(const NetworkInfoMsg&) = default;
NetworkInfoMsg& NetworkInfoMsg::operator=(const NetworkInfoMsg&) = default;
NetworkInfoMsg::~NetworkInfoMsg() = default;

void NetworkInfoMsg::PopulateStorageAndUploadProtos() {}

}  // namespace zt::telemetry::collector::performancesamples
