#include "samplers/device_state_info_msg.h"

namespace zt::telemetry::collector::performancesamples {

DeviceStateInfoMsg::DeviceStateInfoMsg(const PerfMessages& other) : PerfMessages(other) {}

DeviceStateInfoMsg::DeviceStateInfoMsg(shared::wmi::WMIClient* wmi_client) : PerfMessages(wmi_client) {}

void DeviceStateInfoMsg::PopulateStorageAndUploadProtos() {}

}  // namespace zt::telemetry::collector::performancesamples
