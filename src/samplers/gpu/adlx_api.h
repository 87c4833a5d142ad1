#pragma once

#include <cstdint>

#include "base/function_table.h"

// What the collector uses of AMD's device library (ADLX), declared here. Every interface is a table of methods whose
// order is the interface: a method that nobody here calls is deleted and only keeps its slot, since its parameters are
// not declared; a call of it does not compile, and one through the table ends the program. What comes after the last
// one used is left out. The methods are __stdcall and the functions __cdecl, which are one and the same in 64-bit
// programs.

/// Result of the functions and of most methods. Global, unlike all else that is declared here: errors carry its name as
/// the run-time type information spells it.
enum ADLX_RESULT : int;

namespace zt::telemetry::collector::performancesamples::adlx {

/// Results; those below `ADLX_FAIL` are successes. Others occur.
inline constexpr ADLX_RESULT ADLX_OK{0};
inline constexpr ADLX_RESULT ADLX_ALREADY_ENABLED{1};
inline constexpr ADLX_RESULT ADLX_ALREADY_INITIALIZED{2};
inline constexpr ADLX_RESULT ADLX_FAIL{3};
inline constexpr ADLX_RESULT ADLX_INVALID_ARGS{4};
inline constexpr ADLX_RESULT ADLX_NOT_SUPPORTED{12};

inline bool Succeeded(ADLX_RESULT result) {
  return result < ADLX_FAIL;
}

/// Counts references, which is why none of these has a virtual destructor.
class IADLXInterface {
 public:
  virtual std::int32_t Acquire() = 0;
  virtual std::int32_t Release() = 0;
  virtual void QueryInterface() = delete;

 protected:
  ~IADLXInterface() = default;
};

class IADLXGPU : public IADLXInterface {
 public:
  /// Hexadecimal digits. Texts live as long as the interface.
  virtual ADLX_RESULT VendorId(const char** text) = 0;
  virtual void ASICFamilyType() = delete;
  virtual void Type() = delete;
  virtual void IsExternal() = delete;
  virtual void Name() = delete;
  virtual void DriverPath() = delete;
  virtual void PNPString() = delete;
  virtual void HasDesktops() = delete;
  virtual ADLX_RESULT TotalVRAM(std::uint32_t* megabytes) = 0;
  virtual void VRAMType() = delete;
  virtual void BIOSInfo() = delete;
  /// Hexadecimal digits.
  virtual ADLX_RESULT DeviceId(const char** text) = 0;

 protected:
  ~IADLXGPU() = default;
};

class IADLXGPUList : public IADLXInterface {
 public:
  virtual void Size() = delete;
  virtual void Empty() = delete;
  virtual std::uint32_t Begin() = 0;
  /// Behind the last one.
  virtual std::uint32_t End() = 0;
  virtual void At() = delete;
  virtual void Clear() = delete;
  virtual void Remove_Back() = delete;
  virtual void Add_Back() = delete;
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
  virtual void IsSupportedGPUHotspotTemperature() = delete;
  virtual void IsSupportedGPUPower() = delete;
  virtual void IsSupportedGPUTotalBoardPower() = delete;
  virtual void IsSupportedGPUFanSpeed() = delete;
  virtual ADLX_RESULT IsSupportedGPUVRAM(bool* supported) = 0;

 protected:
  ~IADLXGPUMetricsSupport() = default;
};

class IADLXGPUMetrics : public IADLXInterface {
 public:
  virtual void TimeStamp() = delete;
  virtual ADLX_RESULT GPUUsage(double* percent) = 0;
  virtual ADLX_RESULT GPUClockSpeed(std::int32_t* mhz) = 0;
  virtual ADLX_RESULT GPUVRAMClockSpeed(std::int32_t* mhz) = 0;
  virtual ADLX_RESULT GPUTemperature(double* celsius) = 0;
  virtual void GPUHotspotTemperature() = delete;
  virtual void GPUPower() = delete;
  virtual void GPUTotalBoardPower() = delete;
  virtual void GPUFanSpeed() = delete;
  virtual ADLX_RESULT GPUVRAM(std::int32_t* megabytes) = 0;

 protected:
  ~IADLXGPUMetrics() = default;
};

class IADLXPerformanceMonitoringServices : public IADLXInterface {
 public:
  virtual void GetSamplingIntervalRange() = delete;
  virtual void SetSamplingInterval() = delete;
  virtual void GetSamplingInterval() = delete;
  virtual void GetMaxPerformanceMetricsHistorySizeRange() = delete;
  virtual void SetMaxPerformanceMetricsHistorySize() = delete;
  virtual void GetMaxPerformanceMetricsHistorySize() = delete;
  virtual void ClearPerformanceMetricsHistory() = delete;
  virtual void GetCurrentPerformanceMetricsHistorySize() = delete;
  virtual void StartPerformanceMetricsTracking() = delete;
  virtual void StopPerformanceMetricsTracking() = delete;
  virtual void GetAllMetricsHistory() = delete;
  virtual void GetGPUMetricsHistory() = delete;
  virtual void GetSystemMetricsHistory() = delete;
  virtual void GetFPSHistory() = delete;
  virtual void GetCurrentAllMetrics() = delete;
  virtual ADLX_RESULT GetCurrentGPUMetrics(IADLXGPU* gpu, IADLXGPUMetrics** metrics) = 0;
  virtual void GetCurrentSystemMetrics() = delete;
  virtual void GetCurrentFPS() = delete;
  virtual ADLX_RESULT GetSupportedGPUMetrics(IADLXGPU* gpu, IADLXGPUMetricsSupport** support) = 0;

 protected:
  ~IADLXPerformanceMonitoringServices() = default;
};

/// The library's own: not counted, gone with `ADLXTerminate`.
class IADLXSystem {
 public:
  virtual void HybridGraphicsType() = delete;
  virtual ADLX_RESULT GetGPUs(IADLXGPUList** gpus) = 0;
  virtual void QueryInterface() = delete;
  virtual void GetDisplaysServices() = delete;
  virtual void GetDesktopsServices() = delete;
  virtual void GetGPUsChangedHandling() = delete;
  virtual void EnableLog() = delete;
  virtual void Get3DSettingsServices() = delete;
  virtual void GetGPUTuningServices() = delete;
  virtual ADLX_RESULT GetPerformanceMonitoringServices(IADLXPerformanceMonitoringServices** services) = 0;

 protected:
  ~IADLXSystem() = default;
};

/// The library's functions. The `version` of those that start it is that of the interface which the caller was written
/// against.
using Functions = base::FunctionTable<
    base::Required<"ADLXQueryFullVersion", ADLX_RESULT(std::uint64_t* version)>,
    base::Required<"ADLXQueryVersion", ADLX_RESULT(const char** version)>,
    base::Required<"ADLXInitialize", ADLX_RESULT(std::uint64_t version, IADLXSystem** system)>,
    base::Required<"ADLXInitializeWithIncompatibleDriver", ADLX_RESULT(std::uint64_t version, IADLXSystem** system)>,
    base::Required<"ADLXInitializeWithCallerAdl",
                   ADLX_RESULT(std::uint64_t version, IADLXSystem** system, void** adl_mapping, void* adl_context,
                               void (*free_adl_memory)(void** buffer))>,
    base::Required<"ADLXTerminate", ADLX_RESULT()>>;

}  // namespace zt::telemetry::collector::performancesamples::adlx
