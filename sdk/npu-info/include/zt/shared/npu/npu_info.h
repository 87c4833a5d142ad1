#pragma once

#include <cstdint>
#include <string>

#include "zt/zt_npu_info_export.h"

namespace zt::shared::npu {

/// Describes all NPUs of the machine in one document, taken when the object is made.
class ZT_NPU_INFO_EXPORT NPUInfo {
 public:
  NPUInfo();
  ~NPUInfo();
  NPUInfo(const NPUInfo&) = delete;
  NPUInfo& operator=(const NPUInfo&) = delete;

  /// UTF-8 JSON text, valid as long as this object; empty on a machine without NPUs, and where none could be found
  /// (`GetStatus`). The root object has "npu_count" and "npu_info", an array with an object for each NPU: "device_id"
  /// (text: the device instance identifier), "adapter_temp_celsius", "adapter_engine_frequency_hz" and
  /// "adapter_mem_frequency_hz" (objects with "frequency"), "adapter_mem_usage" (object with "dedicated" and "shared":
  /// bytes in use), "dedicated_system_memory" and "shared_system_memory" (bytes there are), "memory_total" and
  /// "memory_used" (bytes, both kinds together). What the machine does not report is missing.
  const char* GetNPUInfoAsJsonString();

  /// 0 where the system told of all its NPUs, also of none; otherwise the HRESULT of the first call that failed: there
  /// may be more of them than the text has.
  std::int32_t GetStatus() const { return status_; }

 private:
  std::string report_;
  std::int32_t status_ = 0;
};

}  // namespace zt::shared::npu
