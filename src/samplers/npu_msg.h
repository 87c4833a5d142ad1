#pragma once

#include "messages/perf_messages.h"

namespace zt::telemetry::collector::performancesamples {

/// Adds the NPUs to the hardware section.
class ZT_COLLECTOR_EXPORT NPUMsg : public PerfMessages {
 public:
  explicit NPUMsg(const PerfMessages& other);
  NPUMsg();
  void PopulateStorageAndUploadProtos() override;
};

}  // namespace zt::telemetry::collector::performancesamples
