#pragma once

#include "messages/perf_messages.h"

namespace zt::telemetry::collector::performancesamples {

/// Adds the graphics cards to the hardware section.
class ZT_COLLECTOR_EXPORT GPUInfoMsg : public PerfMessages {
 public:
  explicit GPUInfoMsg(const PerfMessages& other);
  GPUInfoMsg(shared::wmi::WMIClient* wmi_client, shared::ztbios::PrivateBiosWmi* private_bios_wmi);
  void PopulateStorageAndUploadProtos() override;
};

}  // namespace zt::telemetry::collector::performancesamples
