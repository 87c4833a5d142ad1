#pragma once

#include "samplers/gpu/nvml_api.h"

namespace zt::telemetry::collector::performancesamples {

/// The functions of NVIDIA's management library. The first four are always there; each of the others may be null, since
/// drivers differ in what they export.
struct NvmlFunctions {
  nvmlInit_v2_t* init = nullptr;
  nvmlShutdown_t* shutdown = nullptr;
  nvmlDeviceGetCount_v2_t* device_count = nullptr;
  nvmlDeviceGetHandleByIndex_v2_t* handle_by_index = nullptr;
  nvmlDeviceGetSerial_t* serial = nullptr;
  nvmlDeviceGetPciInfo_v3_t* pci_info = nullptr;
  nvmlDeviceGetCurrentClocksThrottleReasons_t* throttle_reasons = nullptr;
  nvmlDeviceGetTemperature_t* temperature = nullptr;
  nvmlDeviceGetClock_t* clock = nullptr;
  nvmlDeviceGetMemoryBusWidth_t* memory_bus_width = nullptr;
  nvmlDeviceGetMemoryInfo_t* memory_info = nullptr;
  nvmlDeviceGetUtilizationRates_t* utilization_rates = nullptr;
  nvmlDeviceGetEncoderUtilization_t* encoder_utilization = nullptr;
  nvmlDeviceGetDecoderUtilization_t* decoder_utilization = nullptr;
};

/// Finds the library at the first call and keeps it until the process ends: cards stay open, and starts counted, from
/// one pass to the next. Null where there is no library, or one without its four indispensable functions; the next call
/// looks again, since a driver may be installed while the host runs.
const NvmlFunctions* BindNvml();

/// Calls `function`. One that the library does not export fails, as one that the card does not support.
template <typename... Parameters, typename... Arguments>
nvmlReturn_t Call(nvmlReturn_t (*function)(Parameters...), Arguments... arguments) {
  return function != nullptr ? function(arguments...) : NVML_ERROR_FUNCTION_NOT_FOUND;
}

}  // namespace zt::telemetry::collector::performancesamples
