#include "samplers/operating_system/process_table.h"

#include <plog/Log.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>

#include "platform/processes.h"
#include "samplers/operating_system/failure.h"
#include "samplers/operating_system/process_id.h"
#include "samplers/wmi_query.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using shared::wmi::WMIClient;

constexpr wchar_t kTableQuery[] =
    L"SELECT Name, IDProcess, PercentProcessorTime, PriorityBase FROM Win32_PerfFormattedData_PerfProc_Process";
// One "f" short of the class: the text that logs have always had.
constexpr char kTableFailure[] = "Error while querying Win32_PerFormattedData_PerfProc_Process.";
constexpr char kTimedOut[] = "No process is reported: the performance data of processes did not come in time";

constexpr char kIdleProcessId[] = "0";  // that of the idle process, and of the row that totals the others
constexpr std::size_t kMostBusyProcesses = 10;
constexpr double kClockUnitsPerSecond = 10'000'000;  // of 100 ns

WMIProcessInfo ReadRow(const WMIClient& wmi) {
  WMIProcessInfo process;
  wmi.GetValue(L"Name", process.name);
  wmi.GetValue(L"IDProcess", process.process_id);
  wmi.GetValue(L"PercentProcessorTime", process.cpu_percent);
  wmi.GetValue(L"PriorityBase", process.priority);
  return process;
}

bool IsBusy(const WMIProcessInfo& process) {
  return !process.process_id.empty() && process.process_id != kIdleProcessId && process.cpu_percent > 0;
}

// Whole whole_seconds; the low 32 bits, which hold 136 years.
std::uint32_t ProcessorSeconds(const platform::ProcessTimes& times) {
  const double whole_seconds =
      static_cast<double>(times.user) / kClockUnitsPerSecond + static_cast<double>(times.kernel) / kClockUnitsPerSecond;
  return static_cast<std::uint32_t>(static_cast<std::uint64_t>(whole_seconds));
}

// Adds what the system has counted for the process; false where it has not, or has counted nothing.
bool Measure(WMIProcessInfo& process) {
  const std::optional<std::uint32_t> id = ProcessIdNumber(process.process_id);
  if (!id) return false;
  const auto opened = platform::Process::Open(*id, platform::ProcessAccess::kReading);
  if (!opened) return false;
  const std::optional<platform::ProcessTimes> times = opened->Times();
  if (!times) return false;
  process.cpu_time = ProcessorSeconds(*times);
  if (process.cpu_time == 0) return false;
  const std::optional<platform::ProcessMemory> memory = opened->Memory();
  if (!memory || memory->peak_working_set == 0 || memory->working_set == 0) return false;
  process.peak_working_set = static_cast<std::uint32_t>(memory->peak_working_set);
  process.working_set = static_cast<float>(memory->working_set);
  return true;
}

}  // namespace

ProcessTable ListProcesses(WMIClient* wmi) {
  const std::int32_t status = RunQuery(wmi, kTableQuery);
  // The cycle's line about what is thrown tells no reason.
  PLOG_WARNING_IF(status == shared::wmi::kTimedOut) << kTimedOut;
  if (status != shared::wmi::kSuccess) FailWith(kTableFailure);
  ProcessTable table;
  while (wmi->Next()) {
    WMIProcessInfo process = ReadRow(*wmi);
    if (!IsBusy(process) || !Measure(process)) continue;
    auto& entry = table[process.process_id];
    entry = std::make_shared<WMIProcessInfo>(std::move(process));
  }
  return table;
}

ProcessList BusiestOf(const ProcessTable& table) {
  ProcessList processes;
  processes.reserve(table.size());
  for (const auto& [id, process] : table) processes.push_back(process);
  std::sort(processes.begin(), processes.end(),
            [](const auto& left, const auto& right) { return left->cpu_percent > right->cpu_percent; });
  processes.resize(std::min(processes.size(), kMostBusyProcesses));
  return processes;
}

}  // namespace zt::telemetry::collector::performancesamples
