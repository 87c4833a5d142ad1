#pragma once

#include <cstddef>

#include "base/function_table.h"

// What the collector uses of NVIDIA's management library (NVML), declared here with the names, layouts and calling
// convention of its C interface. All functions return a status; those that read write through their pointers.

/// Status of every function. Global, unlike all else that is declared here: errors carry its name as the run-time type
/// information spells it.
enum nvmlReturn_t : int;

namespace zt::telemetry::collector::performancesamples::nvml {

/// Opaque: an open card.
using nvmlDevice_t = struct nvmlDevice_st*;

/// The statuses that are told apart here. Others occur.
inline constexpr nvmlReturn_t NVML_SUCCESS{0};
inline constexpr nvmlReturn_t NVML_ERROR_UNINITIALIZED{1};
inline constexpr nvmlReturn_t NVML_ERROR_INVALID_ARGUMENT{2};
inline constexpr nvmlReturn_t NVML_ERROR_NOT_SUPPORTED{3};
inline constexpr nvmlReturn_t NVML_ERROR_INSUFFICIENT_SIZE{7};
inline constexpr nvmlReturn_t NVML_ERROR_DRIVER_NOT_LOADED{9};
inline constexpr nvmlReturn_t NVML_ERROR_LIBRARY_NOT_FOUND{12};
inline constexpr nvmlReturn_t NVML_ERROR_FUNCTION_NOT_FOUND{13};

enum nvmlTemperatureSensors_t : int { NVML_TEMPERATURE_GPU = 0 };
enum nvmlClockType_t : int { NVML_CLOCK_GRAPHICS = 0, NVML_CLOCK_MEM = 2 };
enum nvmlClockId_t : int { NVML_CLOCK_ID_CURRENT = 0 };

struct nvmlPciInfo_t {
  char busIdLegacy[16];
  unsigned int domain;
  unsigned int bus;
  unsigned int device;
  unsigned int pciDeviceId;
  unsigned int pciSubSystemId;
  char busId[32];  // domain:bus:device.function in hexadecimal, 00000000:0A:00.0
};
static_assert(sizeof(nvmlPciInfo_t) == 68 && offsetof(nvmlPciInfo_t, busId) == 36);

/// Bytes.
struct nvmlMemory_t {
  unsigned long long total;
  unsigned long long free;
  unsigned long long used;
};
static_assert(sizeof(nvmlMemory_t) == 24);

/// Percent of the time of a sampling period.
struct nvmlUtilization_t {
  unsigned int gpu;
  unsigned int memory;
};
static_assert(sizeof(nvmlUtilization_t) == 8);

/// The library's functions. Drivers differ in which of the optional ones they have.
using Functions = base::FunctionTable<
    base::Required<"nvmlInit_v2", nvmlReturn_t()>, base::Required<"nvmlShutdown", nvmlReturn_t()>,
    base::Required<"nvmlDeviceGetCount_v2", nvmlReturn_t(unsigned int* count)>,
    base::Required<"nvmlDeviceGetHandleByIndex_v2", nvmlReturn_t(unsigned int index, nvmlDevice_t* device)>,
    base::Optional<"nvmlDeviceGetSerial", nvmlReturn_t(nvmlDevice_t device, char* serial, unsigned int capacity)>,
    base::Optional<"nvmlDeviceGetPciInfo_v3", nvmlReturn_t(nvmlDevice_t device, nvmlPciInfo_t* pci)>,
    base::Optional<"nvmlDeviceGetCurrentClocksThrottleReasons",
                   nvmlReturn_t(nvmlDevice_t device, unsigned long long* reasons)>,
    base::Optional<"nvmlDeviceGetTemperature",
                   nvmlReturn_t(nvmlDevice_t device, nvmlTemperatureSensors_t sensor, unsigned int* celsius)>,
    base::Optional<"nvmlDeviceGetClock",
                   nvmlReturn_t(nvmlDevice_t device, nvmlClockType_t type, nvmlClockId_t id, unsigned int* mhz)>,
    base::Optional<"nvmlDeviceGetMemoryBusWidth", nvmlReturn_t(nvmlDevice_t device, unsigned int* bits)>,
    base::Optional<"nvmlDeviceGetMemoryInfo", nvmlReturn_t(nvmlDevice_t device, nvmlMemory_t* memory)>,
    base::Optional<"nvmlDeviceGetUtilizationRates", nvmlReturn_t(nvmlDevice_t device, nvmlUtilization_t* rates)>,
    base::Optional<"nvmlDeviceGetEncoderUtilization",
                   nvmlReturn_t(nvmlDevice_t device, unsigned int* percent, unsigned int* sampling_period_us)>,
    base::Optional<"nvmlDeviceGetDecoderUtilization",
                   nvmlReturn_t(nvmlDevice_t device, unsigned int* percent, unsigned int* sampling_period_us)>>;

}  // namespace zt::telemetry::collector::performancesamples::nvml
