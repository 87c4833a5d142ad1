#pragma once

#include "messages/perf_messages.h"

namespace zt::telemetry::collector::performancesamples {

/// Fills the memory section of the hardware, from WMI, and the memory clock of the platform-management record.
class ZT_COLLECTOR_EXPORT MemoryInfoMsg : public PerfMessages {
 public:
  explicit MemoryInfoMsg(const PerfMessages& other);
  explicit MemoryInfoMsg(shared::wmi::WMIClient* wmi_client);

  /// Throws `Error` (kind 5, the query's status as code) when one of the three queries fails. A row or a property that
  /// is missing counts as 0.
  void PopulateStorageAndUploadProtos() override;
};

}  // namespace zt::telemetry::collector::performancesamples
