#pragma once

#include "messages/perf_messages.h"

namespace zt::telemetry::collector::performancesamples {

/// Adds the batteries (at most two) to the hardware section, from the battery library, and the last one's figures to
/// the storage records.
class ZT_COLLECTOR_EXPORT BatteryInfoMsg : public PerfMessages {
 public:
  explicit BatteryInfoMsg(const PerfMessages& other);
  BatteryInfoMsg();

  /// Adds nothing on a machine without batteries, and where the system does not tell its power status.
  void PopulateStorageAndUploadProtos() override;

 private:
  /// Whether the system's power status tells of a battery.
  static bool HasBattery();
};

}  // namespace zt::telemetry::collector::performancesamples
