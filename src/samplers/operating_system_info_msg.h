#pragma once

#include "messages/perf_messages.h"
#include "types/wmi_process_info.h"

namespace zt::telemetry::collector::performancesamples {

/// Fills the operating system section: the figures of the user session, and the busiest processes.
class ZT_COLLECTOR_EXPORT OperatingSystemInfoMsg : public PerfMessages {
 public:
  explicit OperatingSystemInfoMsg(const PerfMessages& other);
  explicit OperatingSystemInfoMsg(shared::wmi::WMIClient* wmi_client);

  /// Throws a `std::exception*`, which stays the collector's own, when the last input or the list of processes cannot
  /// be had, or when one of the busiest processes has gone before its details are read: then no process is reported.
  /// The session's figures that were read before stay.
  void PopulateStorageAndUploadProtos() override;

 private:
  /// The processes that use the processor, from WMI's performance data and the system's own counters.
  ProcessTable GetProcessTable();

  /// At most ten processes of the table, those with the highest load, complete and in the units of the record; in the
  /// order in which WMI tells their operation counts.
  ProcessList GetMostIntesiveProcessList();
};

}  // namespace zt::telemetry::collector::performancesamples
