#pragma once

#include "messages/perf_messages.h"

namespace zt::telemetry::collector::performancesamples {

/// Network: adds nothing to a live record, since the hourly network records carry it.
class ZT_COLLECTOR_EXPORT NetworkInfoMsg : public PerfMessages {
 public:
  explicit NetworkInfoMsg(const PerfMessages& other);
  NetworkInfoMsg();
  void PopulateStorageAndUploadProtos() override;
};

}  // namespace zt::telemetry::collector::performancesamples
