#pragma once

#include "messages/perf_messages.h"

namespace zt::telemetry::collector::performancesamples {

/// Adds the fixed drives to the hardware section.
class ZT_COLLECTOR_EXPORT StorageInfoMsg : public PerfMessages {
 public:
  explicit StorageInfoMsg(const PerfMessages& other);
  StorageInfoMsg(shared::wmi::WMIClient* wmi_client, shared::ztbios::PrivateBiosWmi* private_bios_wmi);
  void PopulateStorageAndUploadProtos() override;
};

}  // namespace zt::telemetry::collector::performancesamples
