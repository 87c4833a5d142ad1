#pragma once

#include "messages/perf_messages.h"

namespace zt::telemetry::collector::performancesamples {

/// Fans: adds nothing to a live record, since the hourly thermal records carry them.
class ZT_COLLECTOR_EXPORT FansInfoMsg : public PerfMessages {
 public:
  explicit FansInfoMsg(const PerfMessages& other);
  FansInfoMsg();
  void PopulateStorageAndUploadProtos() override;
};

}  // namespace zt::telemetry::collector::performancesamples
