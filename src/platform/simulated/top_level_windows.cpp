#include "platform/top_level_windows.h"

#include <zt/text/wide_text.h>

#include "platform/simulated/disturbed.h"
#include "simulation/calls.h"
#include "simulation/machine.h"

namespace zt::telemetry::collector::performancesamples::platform {
std::vector<TopLevelWindow> TopLevelWindowsOf(std::uint32_t process_id) {
  std::vector<TopLevelWindow> found;
  switch (simulation::Announce("EnumWindows", {Disturbance::kFails, Disturbance::kAbsurd, Disturbance::kEndlessText})) {
    case Disturbance::kFails:
      return found;
    case Disturbance::kAbsurd:
      return std::vector<TopLevelWindow>(kAbsurdlyMany);
    case Disturbance::kEndlessText:
      return {{true, false, std::wstring(kWindowTextCapacity - 1, L'x')}};
    default:
      break;
  }
  for (const simulation::Process& process : simulation::CurrentMachine().processes) {
    if (process.id != process_id) continue;
    for (const simulation::Window& window : process.windows) {
      found.push_back(
          {window.visible, window.has_owner, text::ToWide(window.title).substr(0, kWindowTextCapacity - 1)});
    }
  }
  return found;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
