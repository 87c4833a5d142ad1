#include "samplers/operating_system_info_msg.h"

namespace zt::telemetry::collector::performancesamples {

OperatingSystemInfoMsg::OperatingSystemInfoMsg(const PerfMessages& other) : PerfMessages(other) {}

OperatingSystemInfoMsg::OperatingSystemInfoMsg(shared::wmi::WMIClient* wmi_client) : PerfMessages(wmi_client) {}

void OperatingSystemInfoMsg::PopulateStorageAndUploadProtos() {}

}  // namespace zt::telemetry::collector::performancesamples
