#pragma once

#include "messages/perf_messages.h"

namespace zt::telemetry::collector::performancesamples {

/// Processors: adds nothing to a live record, since the hourly thermal records carry them.
class ZT_COLLECTOR_EXPORT CPUInfoMsg : public PerfMessages {
 public:
  explicit CPUInfoMsg(const PerfMessages& other);
  CPUInfoMsg();
  void PopulateStorageAndUploadProtos() override;
};

}  // namespace zt::telemetry::collector::performancesamples
