#pragma once

#include <cstdint>

// What the collector uses of AMD's device library (ADLX), declared here. Every interface is a table of methods whose
// order is the interface: a method that nobody here calls has an empty body and only keeps its slot, and what comes
// after the last one used is left out. The methods are __stdcall and the functions __cdecl, which are one and the same
// in 64-bit programs.

/// Result of the functions and of most methods. Those below `ADLX_FAIL` are successes. Values that are not listed
/// occur.
enum ADLX_RESULT : int {
  ADLX_OK = 0,
  ADLX_ALREADY_ENABLED = 1,
  ADLX_ALREADY_INITIALIZED = 2,
  ADLX_FAIL = 3,
  ADLX_INVALID_ARGS = 4,
  ADLX_NOT_SUPPORTED = 12,
};

inline bool Succeeded(ADLX_RESULT result) {
  return result < ADLX_FAIL;
}

/// Counts references, which is why none of these has a virtual destructor.
class IADLXInterface {
 public:
  virtual std::int32_t Acquire() = 0;
  virtual std::int32_t Release() = 0;
  virtual void QueryInterface() {}

 protected:
  ~IADLXInterface() = default;
};

class IADLXGPU : public IADLXInterface {
 public:
  /// Hexadecimal digits. Texts live as long as the interface.
  virtual ADLX_RESULT VendorId(const char** text) = 0;
  virtual void ASICFamilyType() {}
  virtual void Type() {}
  virtual void IsExternal() {}
  virtual void Name() {}
  virtual void DriverPath() {}
  virtual void PNPString() {}
  virtual void HasDesktops() {}
  virtual ADLX_RESULT TotalVRAM(std::uint32_t* megabytes) = 0;
  virtual void VRAMType() {}
  virtual void BIOSInfo() {}
  /// Hexadecimal digits.
  virtual ADLX_RESULT DeviceId(const char** text) = 0;

 protected:
  ~IADLXGPU() = default;
};

class IADLXGPUList : public IADLXInterface {
 public:
  virtual void Size() {}
  virtual void Empty() {}
  virtual std::uint32_t Begin() = 0;
  /// Behind the last one.
  virtual std::uint32_t End() = 0;
  virtual void At() {}
  virtual void Clear() {}
  virtual void Remove_Back() {}
  virtual void Add_Back() {}
  virtual ADLX_RESULT At_GPUList(std::uint32_t location, IADLXGPU** gpu) = 0;

 protected:
  ~IADLXGPUList() = default;
};

class IADLXGPUMetricsSupport : public IADLXInterface {
 public:
  virtual ADLX_RESULT IsSupportedGPUUsage(bool* supported) = 0;
  virtual ADLX_RESULT IsSupportedGPUClockSpeed(bool* supported) = 0;
  virtual ADLX_RESULT IsSupportedGPUVRAMClockSpeed(bool* supported) = 0;
  virtual ADLX_RESULT IsSupportedGPUTemperature(bool* supported) = 0;
  virtual void IsSupportedGPUHotspotTemperature() {}
  virtual void IsSupportedGPUPower() {}
  virtual void IsSupportedGPUTotalBoardPower() {}
  virtual void IsSupportedGPUFanSpeed() {}
  virtual ADLX_RESULT IsSupportedGPUVRAM(bool* supported) = 0;

 protected:
  ~IADLXGPUMetricsSupport() = default;
};

class IADLXGPUMetrics : public IADLXInterface {
 public:
  virtual void TimeStamp() {}
  virtual ADLX_RESULT GPUUsage(double* percent) = 0;
  virtual ADLX_RESULT GPUClockSpeed(std::int32_t* mhz) = 0;
  virtual ADLX_RESULT GPUVRAMClockSpeed(std::int32_t* mhz) = 0;
  virtual ADLX_RESULT GPUTemperature(double* celsius) = 0;
  virtual void GPUHotspotTemperature() {}
  virtual void GPUPower() {}
  virtual void GPUTotalBoardPower() {}
  virtual void GPUFanSpeed() {}
  virtual ADLX_RESULT GPUVRAM(std::int32_t* megabytes) = 0;

 protected:
  ~IADLXGPUMetrics() = default;
};

class IADLXPerformanceMonitoringServices : public IADLXInterface {
 public:
  virtual void GetSamplingIntervalRange() {}
  virtual void SetSamplingInterval() {}
  virtual void GetSamplingInterval() {}
  virtual void GetMaxPerformanceMetricsHistorySizeRange() {}
  virtual void SetMaxPerformanceMetricsHistorySize() {}
  virtual void GetMaxPerformanceMetricsHistorySize() {}
  virtual void ClearPerformanceMetricsHistory() {}
  virtual void GetCurrentPerformanceMetricsHistorySize() {}
  virtual void StartPerformanceMetricsTracking() {}
  virtual void StopPerformanceMetricsTracking() {}
  virtual void GetAllMetricsHistory() {}
  virtual void GetGPUMetricsHistory() {}
  virtual void GetSystemMetricsHistory() {}
  virtual void GetFPSHistory() {}
  virtual void GetCurrentAllMetrics() {}
  virtual ADLX_RESULT GetCurrentGPUMetrics(IADLXGPU* gpu, IADLXGPUMetrics** metrics) = 0;
  virtual void GetCurrentSystemMetrics() {}
  virtual void GetCurrentFPS() {}
  virtual ADLX_RESULT GetSupportedGPUMetrics(IADLXGPU* gpu, IADLXGPUMetricsSupport** support) = 0;

 protected:
  ~IADLXPerformanceMonitoringServices() = default;
};

/// The library's own: not counted, gone with `ADLXTerminate`.
class IADLXSystem {
 public:
  virtual void HybridGraphicsType() {}
  virtual ADLX_RESULT GetGPUs(IADLXGPUList** gpus) = 0;
  virtual void QueryInterface() {}
  virtual void GetDisplaysServices() {}
  virtual void GetDesktopsServices() {}
  virtual void GetGPUsChangedHandling() {}
  virtual void EnableLog() {}
  virtual void Get3DSettingsServices() {}
  virtual void GetGPUTuningServices() {}
  virtual ADLX_RESULT GetPerformanceMonitoringServices(IADLXPerformanceMonitoringServices** services) = 0;

 protected:
  ~IADLXSystem() = default;
};

// Each function's type; the function is exported without the "_t".
using ADLXQueryFullVersion_t = ADLX_RESULT(std::uint64_t* version);
using ADLXQueryVersion_t = ADLX_RESULT(const char** version);
/// `version`: that of the interface which the caller was written against.
using ADLXInitialize_t = ADLX_RESULT(std::uint64_t version, IADLXSystem** system);
using ADLXInitializeWithIncompatibleDriver_t = ADLX_RESULT(std::uint64_t version, IADLXSystem** system);
using ADLXInitializeWithCallerAdl_t = ADLX_RESULT(std::uint64_t version, IADLXSystem** system, void** adl_mapping,
                                                  void* adl_context, void (*free_adl_memory)(void** buffer));
using ADLXTerminate_t = ADLX_RESULT();
