#include "platform/power_status.h"

#include <windows.h>

namespace zt::telemetry::collector::performancesamples::platform {

std::optional<std::uint8_t> BatteryFlag() {
  SYSTEM_POWER_STATUS status{};
  if (::GetSystemPowerStatus(&status) == FALSE) return std::nullopt;
  return status.BatteryFlag;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
