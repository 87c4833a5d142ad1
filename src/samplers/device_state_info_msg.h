#pragma once

#include "messages/perf_messages.h"

namespace zt::telemetry::collector::performancesamples {

/// Reports the posture of the device.
class ZT_COLLECTOR_EXPORT DeviceStateInfoMsg : public PerfMessages {
 public:
  explicit DeviceStateInfoMsg(const PerfMessages& other);
  explicit DeviceStateInfoMsg(shared::wmi::WMIClient* wmi_client);
  void PopulateStorageAndUploadProtos() override;
};

}  // namespace zt::telemetry::collector::performancesamples
