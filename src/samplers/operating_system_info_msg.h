#pragma once

#include "messages/perf_messages.h"

namespace zt::telemetry::collector::performancesamples {

/// Fills the operating system section: the user session and the busiest processes.
class ZT_COLLECTOR_EXPORT OperatingSystemInfoMsg : public PerfMessages {
 public:
  explicit OperatingSystemInfoMsg(const PerfMessages& other);
  explicit OperatingSystemInfoMsg(shared::wmi::WMIClient* wmi_client);
  void PopulateStorageAndUploadProtos() override;
};

}  // namespace zt::telemetry::collector::performancesamples
