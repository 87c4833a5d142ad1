#include "platform/session_clock.h"

#include <windows.h>

namespace zt::telemetry::collector::performancesamples::platform {

std::uint64_t TickCountMs() {
  return ::GetTickCount64();
}

std::uint32_t MaximumTouches() {
  return static_cast<std::uint32_t>(::GetSystemMetrics(SM_MAXIMUMTOUCHES));
}

std::optional<std::uint32_t> LastInputTickMs() {
  LASTINPUTINFO last_input{sizeof(LASTINPUTINFO), 0};
  if (::GetLastInputInfo(&last_input) == FALSE) return std::nullopt;
  return last_input.dwTime;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
