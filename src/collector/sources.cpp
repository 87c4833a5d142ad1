#include "collector/sources.h"

#include <plog/Log.h>

#include <array>
#include <type_traits>

#include "collector/logged_failure.h"
#include "samplers/battery_info_msg.h"
#include "samplers/device_state_info_msg.h"
#include "samplers/gpu/gpu_info_msg.h"
#include "samplers/memory_info_msg.h"
#include "samplers/npu_msg.h"
#include "samplers/operating_system_info_msg.h"
#include "samplers/storage_info_msg.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

// A builder takes the clients that it asks, and only those.
template <typename Builder>
std::shared_ptr<PerfMessages> Make(Clients& clients) {
  if constexpr (std::is_constructible_v<Builder, shared::wmi::WMIClient*, shared::ztbios::PrivateBiosWmi*>) {
    return std::make_shared<Builder>(clients.Wmi(), clients.Bios());
  } else if constexpr (std::is_constructible_v<Builder, shared::wmi::WMIClient*>) {
    return std::make_shared<Builder>(clients.Wmi());
  } else {
    return std::make_shared<Builder>();
  }
}

constexpr auto kSources = std::to_array<Source>({
    {"Batteries", Make<BatteryInfoMsg>},
    {"Posture", Make<DeviceStateInfoMsg>},
    {"Memory", Make<MemoryInfoMsg>},
    {"Graphics cards", Make<GPUInfoMsg>},
    {"NPUs", Make<NPUMsg>},
    {"Storage drives", Make<StorageInfoMsg>},
    {"Processes and session", Make<OperatingSystemInfoMsg>},
});

}  // namespace

Clients::Clients() {
  try {
    wmi_.emplace(shared::wmi::kSystemNamespace);
  } catch (...) {
    LogFailure(PLOG_GET_FUNC());
  }
  try {
    bios_.emplace();
  } catch (...) {
    LogFailure(PLOG_GET_FUNC());
  }
}

std::span<const Source> Sources() {
  return kSources;
}

BuilderList MakeBuilders(Clients& clients) {
  BuilderList builders;
  for (const Source& source : Sources()) builders.push_back(source.make(clients));
  return builders;
}

}  // namespace zt::telemetry::collector::performancesamples
