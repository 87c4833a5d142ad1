#include "samplers/operating_system/process_details.h"

#include <cstdint>
#include <optional>
#include <string>

#include "platform/processes.h"
#include "platform/top_level_windows.h"
#include "samplers/operating_system/failure.h"
#include "samplers/operating_system/process_id.h"
#include "samplers/operating_system/start_time_text.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

constexpr char kCannotOpen[] = "Unable to open process. ProcessId: ";

constexpr char kRunning[] = "running";
constexpr char kNotResponding[] = "notResponding";
constexpr char kTerminated[] = "terminated";
constexpr char kUnknownUser[] = "unknown";

platform::Process OpenForQuery(const std::string& process_id) {
  const std::optional<std::uint32_t> id = ProcessIdNumber(process_id);
  std::optional<platform::Process> process;
  if (id) process = platform::Process::Open(*id, platform::ProcessAccess::kLimitedQuery);
  if (!process) FailWith(kCannotOpen);
  return std::move(*process);
}

std::string StatusOf(const platform::Process& process) {
  const std::optional<std::uint32_t> exit_code = process.ExitCode();
  if (!exit_code) return kUnknownUser;
  if (*exit_code != platform::kStillActive) return kTerminated;
  switch (process.PollEnd()) {
    case platform::kWaitTimedOut:
      return kRunning;
    case platform::kWaitSignalled:  // it ended with the code that says it has not
      return kTerminated;
    case platform::kWaitAbandoned:
      return kNotResponding;
    default:
      return kUnknownUser;
  }
}

std::string StartTimeOf(const platform::Process& process) {
  const std::optional<platform::ProcessTimes> times = process.Times();
  return times ? StartTimeText(times->created) : std::string();
}

// The first window that is hidden or owned decides against a title, the first one with a text for it.
bool HasWindowTitle(std::uint32_t process_id) {
  for (const platform::TopLevelWindow& window : platform::TopLevelWindowsOf(process_id)) {
    if (!window.visible || window.has_owner) return false;
    if (!window.text.empty()) return true;
  }
  return false;
}

}  // namespace

void FillDetails(WMIProcessInfo& process) {
  const platform::Process opened = OpenForQuery(process.process_id);
  process.status = StatusOf(opened);
  process.is_elevated = opened.IsElevated().value_or(false);
  process.start_time = StartTimeOf(opened);
  process.has_window_title = HasWindowTitle(ProcessIdNumber(process.process_id).value_or(0));
}

}  // namespace zt::telemetry::collector::performancesamples
