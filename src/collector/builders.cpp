#include "collector/builders.h"

#include "samplers/battery_info_msg.h"
#include "samplers/device_state_info_msg.h"
#include "samplers/gpu/gpu_info_msg.h"
#include "samplers/memory_info_msg.h"
#include "samplers/npu_msg.h"
#include "samplers/operating_system_info_msg.h"
#include "samplers/storage_info_msg.h"

namespace zt::telemetry::collector::performancesamples {

BuilderList MakeBuilders(shared::wmi::WMIClient& wmi, shared::ztbios::PrivateBiosWmi& bios) {
  return {
      std::make_shared<BatteryInfoMsg>(),
      std::make_shared<DeviceStateInfoMsg>(&wmi),
      std::make_shared<MemoryInfoMsg>(&wmi),
      std::make_shared<GPUInfoMsg>(&wmi, &bios),
      std::make_shared<NPUMsg>(),
      std::make_shared<StorageInfoMsg>(&wmi, &bios),
      std::make_shared<OperatingSystemInfoMsg>(&wmi),
  };
}

}  // namespace zt::telemetry::collector::performancesamples
