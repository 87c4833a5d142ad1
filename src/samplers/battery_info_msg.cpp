#include "samplers/battery_info_msg.h"

namespace zt::telemetry::collector::performancesamples {

BatteryInfoMsg::BatteryInfoMsg(const PerfMessages& other) : PerfMessages(other) {}

BatteryInfoMsg::BatteryInfoMsg() = default;

void BatteryInfoMsg::PopulateStorageAndUploadProtos() {}

}  // namespace zt::telemetry::collector::performancesamples
