#include "samplers/gpu/gpu_info_msg.h"

namespace zt::telemetry::collector::performancesamples {

GPUInfoMsg::GPUInfoMsg(const PerfMessages& other) : PerfMessages(other) {}

GPUInfoMsg::GPUInfoMsg(shared::wmi::WMIClient* wmi_client, shared::ztbios::PrivateBiosWmi* private_bios_wmi)
    : PerfMessages(wmi_client, private_bios_wmi) {}

void GPUInfoMsg::PopulateStorageAndUploadProtos() {}

}  // namespace zt::telemetry::collector::performancesamples
