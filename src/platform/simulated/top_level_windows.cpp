#include "platform/top_level_windows.h"

#include <zt/text/wide_text.h>

#include "simulation/machine.h"

namespace zt::telemetry::collector::performancesamples::platform {

std::vector<TopLevelWindow> TopLevelWindowsOf(std::uint32_t process_id) {
  std::vector<TopLevelWindow> found;
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
