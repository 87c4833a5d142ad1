#include "platform/session_number.h"

#include <windows.h>

namespace zt::telemetry::collector::performancesamples::platform {

std::optional<std::uint32_t> SessionNumber() {
  DWORD number = 0;
  if (::ProcessIdToSessionId(::GetCurrentProcessId(), &number) == FALSE) return std::nullopt;
  return number;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
