#pragma once

#include <string>

namespace zt::shared::npu {

/// Describes all NPUs of the machine in one document.
class NPUInfo {
 public:
  NPUInfo();
  ~NPUInfo();

  /// UTF-8 JSON text, valid as long as this object; empty when the machine cannot tell. The root object has "npu_count"
  /// and "npu_info", an array with an object for each NPU: "device_id" (text), "adapter_temp_celsius",
  /// "adapter_engine_frequency_hz" and "adapter_mem_frequency_hz" (objects with "frequency"), "adapter_mem_usage"
  /// (object with "dedicated" and "shared", bytes), "dedicated_system_memory", "shared_system_memory", "memory_total"
  /// and "memory_used" (bytes). All but "device_id" may be missing.
  const char* GetNPUInfoAsJsonString();

 private:
  std::string report_;
};

}  // namespace zt::shared::npu
