#pragma once

#include <cstddef>

// What the collector uses of NVIDIA's management library (NVML), declared here with the names, layouts and calling
// convention of its C interface. All functions return a status; those that read write through their pointers.

/// Opaque: an open card.
using nvmlDevice_t = struct nvmlDevice_st*;

/// Status of every function. Values that are not listed occur.
enum nvmlReturn_t : int {
  NVML_SUCCESS = 0,
  NVML_ERROR_UNINITIALIZED = 1,
  NVML_ERROR_INVALID_ARGUMENT = 2,
  NVML_ERROR_NOT_SUPPORTED = 3,
  NVML_ERROR_INSUFFICIENT_SIZE = 7,
  NVML_ERROR_DRIVER_NOT_LOADED = 9,
  NVML_ERROR_LIBRARY_NOT_FOUND = 12,
  NVML_ERROR_FUNCTION_NOT_FOUND = 13,
};

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

// Each function's type; the function is exported without the "_t".
using nvmlInit_v2_t = nvmlReturn_t();
using nvmlShutdown_t = nvmlReturn_t();
using nvmlDeviceGetCount_v2_t = nvmlReturn_t(unsigned int* count);
using nvmlDeviceGetHandleByIndex_v2_t = nvmlReturn_t(unsigned int index, nvmlDevice_t* device);
using nvmlDeviceGetSerial_t = nvmlReturn_t(nvmlDevice_t device, char* serial, unsigned int capacity);
using nvmlDeviceGetPciInfo_v3_t = nvmlReturn_t(nvmlDevice_t device, nvmlPciInfo_t* pci);
using nvmlDeviceGetCurrentClocksThrottleReasons_t = nvmlReturn_t(nvmlDevice_t device, unsigned long long* reasons);
using nvmlDeviceGetTemperature_t = nvmlReturn_t(nvmlDevice_t device, nvmlTemperatureSensors_t sensor,
                                                unsigned int* celsius);
using nvmlDeviceGetClock_t = nvmlReturn_t(nvmlDevice_t device, nvmlClockType_t type, nvmlClockId_t id,
                                          unsigned int* mhz);
using nvmlDeviceGetMemoryBusWidth_t = nvmlReturn_t(nvmlDevice_t device, unsigned int* bits);
using nvmlDeviceGetMemoryInfo_t = nvmlReturn_t(nvmlDevice_t device, nvmlMemory_t* memory);
using nvmlDeviceGetUtilizationRates_t = nvmlReturn_t(nvmlDevice_t device, nvmlUtilization_t* rates);
using nvmlDeviceGetEncoderUtilization_t = nvmlReturn_t(nvmlDevice_t device, unsigned int* percent,
                                                       unsigned int* sampling_period_us);
using nvmlDeviceGetDecoderUtilization_t = nvmlReturn_t(nvmlDevice_t device, unsigned int* percent,
                                                       unsigned int* sampling_period_us);
