#include "samplers/storage_info_msg.h"

namespace zt::telemetry::collector::performancesamples {

StorageInfoMsg::StorageInfoMsg(const PerfMessages& other) : PerfMessages(other) {}

StorageInfoMsg::StorageInfoMsg(shared::wmi::WMIClient* wmi_client, shared::ztbios::PrivateBiosWmi* private_bios_wmi)
    : PerfMessages(wmi_client, private_bios_wmi) {}

void StorageInfoMsg::PopulateStorageAndUploadProtos() {}

}  // namespace zt::telemetry::collector::performancesamples
