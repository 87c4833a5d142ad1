#pragma once

#include "messages/perf_messages.h"

namespace zt::telemetry::collector::performancesamples {

/// Adds the batteries to the hardware section.
class ZT_COLLECTOR_EXPORT BatteryInfoMsg : public PerfMessages {
 public:
  explicit BatteryInfoMsg(const PerfMessages& other);
  BatteryInfoMsg();
  void PopulateStorageAndUploadProtos() override;
};

}  // namespace zt::telemetry::collector::performancesamples
