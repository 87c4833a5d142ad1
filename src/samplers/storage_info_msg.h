#pragma once

#include <string>

#include "messages/perf_messages.h"

namespace zt::telemetry::collector::performancesamples {

/// Adds the fixed drives to the hardware section: their identity by WMI and the storage library, and how full they are.
class ZT_COLLECTOR_EXPORT StorageInfoMsg : public PerfMessages {
 public:
  explicit StorageInfoMsg(const PerfMessages& other);
  StorageInfoMsg(shared::wmi::WMIClient* wmi_client, shared::ztbios::PrivateBiosWmi* private_bios_wmi);

  /// Throws `Error` (kind 5, the query's status as code) when a WMI query fails; no drive is added then. A property
  /// that cannot be read is an empty text, or 0 bytes.
  void PopulateStorageAndUploadProtos() override;

 private:
  /// Used share of the logical disks on the drive, percent (0 to 100), from Win32_LogicalDisk's "FreeSpace" and "Size";
  /// 0 when there is none. `device_id`: Win32_DiskDrive's "DeviceID". Throws `Error` when a query fails.
  float GetDiskUsagePercent(std::string device_id);
};

}  // namespace zt::telemetry::collector::performancesamples
