#include "platform/top_level_windows.h"

#include <windows.h>

#include <algorithm>
#include <array>

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

struct Search {
  DWORD process_id;
  std::vector<TopLevelWindow> found;
};

// As the system keeps it. `GetWindowText` would ask a window of this very process for its text, and wait for ever if
// the window's thread has stopped answering; of other processes' windows it gives the same text as this.
std::wstring TextOf(HWND window) {
  std::array<wchar_t, kWindowTextCapacity> buffer{};
  const int length = ::InternalGetWindowText(window, buffer.data(), static_cast<int>(buffer.size()));
  return {buffer.data(), static_cast<std::size_t>(std::max(length, 0))};
}

// The system calls it, and no exception may pass through the system: without memory the program ends here.
BOOL CALLBACK Visit(HWND window, LPARAM argument) noexcept {
  auto& search = *reinterpret_cast<Search*>(argument);
  DWORD process_id = 0;
  ::GetWindowThreadProcessId(window, &process_id);
  if (process_id == search.process_id) {
    search.found.push_back(
        {::IsWindowVisible(window) != FALSE, ::GetWindow(window, GW_OWNER) != nullptr, TextOf(window)});
  }
  return TRUE;
}

}  // namespace

std::vector<TopLevelWindow> TopLevelWindowsOf(std::uint32_t process_id) {
  Search search{process_id, {}};
  ::EnumWindows(Visit, reinterpret_cast<LPARAM>(&search));
  return std::move(search.found);
}

}  // namespace zt::telemetry::collector::performancesamples::platform
