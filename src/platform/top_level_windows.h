#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// The windows of the desktop.
namespace zt::telemetry::collector::performancesamples::platform {

/// Room for a window's text, in wide characters, its end included; a longer text is cut.
inline constexpr std::size_t kWindowTextCapacity = 156;

/// A top-level window at the moment of the enumeration.
struct TopLevelWindow {
  bool visible = false;
  bool has_owner = false;
  std::wstring text;  // of the title bar; empty also when it cannot be read
};

/// The top-level windows of the process `process_id` in the order in which the system enumerates them; none when it
/// does not. Never waits for a process that has stopped answering.
std::vector<TopLevelWindow> TopLevelWindowsOf(std::uint32_t process_id);

}  // namespace zt::telemetry::collector::performancesamples::platform
