#include "samplers/operating_system/process_section.h"

#include <cmath>

#include "messages/record_parts.h"
#include "zt/telemetry/common/utils.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using ProcessEntry = contract::upload::log::PcLogPerformanceSamplesAsCDM_OperatingSystemInfo_OperatingSystemProcessInfo;
using contract::upload::log::ProcessResourceUtilizationInfo;

constexpr int kMostSentProcesses = 20;
constexpr unsigned long long kMostNameBytes = 256;

bool IsMeasured(const WMIProcessInfo& process) {
  return std::isfinite(process.cpu_percent) && std::isfinite(process.working_set) && process.cpu_time != 0 &&
         process.peak_working_set != 0;
}

void FillUtilization(const WMIProcessInfo& process, ProcessResourceUtilizationInfo& utilization) {
  utilization.set_total_cpu_time_seconds(process.cpu_time);
  utilization.set_cpu_utilization_percent(process.cpu_percent);
  utilization.set_memory_utilization_mb(process.working_set);
  utilization.set_memory_utilization_peak_mb(process.peak_working_set);
  utilization.set_io_writes(process.io_writes);
  utilization.set_io_writes_kb(process.io_writes_kb);
  utilization.set_io_reads(process.io_reads);
  utilization.set_io_reads_kb(process.io_reads_kb);
}

void Fill(const WMIProcessInfo& process, ProcessEntry& entry) {
  entry.set_executable_file_id(common::Utils::AdjustString(process.name, kMostNameBytes));
  entry.set_base_priority(process.priority);
  entry.set_status(process.status);
  entry.set_is_elevated(process.is_elevated);
  if (!process.start_time.empty()) entry.set_start_time(process.start_time);
  entry.set_has_window_title(process.has_window_title);
  FillUtilization(process, OpenSection(entry, &ProcessEntry::mutable_resource_utilization_info,
                                       &ProcessEntry::clear_resource_utilization_info));
}

}  // namespace

void AddProcesses(const ProcessList& processes,
                  contract::upload::log::PcLogPerformanceSamplesAsCDM_OperatingSystemInfo& section) {
  int accepted = 0;
  for (const auto& process : processes) {
    if (!IsMeasured(*process)) continue;
    if (++accepted > kMostSentProcesses) return;
    Fill(*process, AddEntry(*section.mutable_resource_intensive_processes_info()));
  }
}

}  // namespace zt::telemetry::collector::performancesamples
