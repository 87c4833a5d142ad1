#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "base/function_table.h"

/// The part of the graphics kernel's interface that tells how adapters are used. The compilers' headers lack it;
/// numbers and layouts are the system's.
namespace zt::shared::npu::kernel {

inline constexpr wchar_t kLibrary[] = L"gdi32.dll";

using Status = LONG;  // NTSTATUS
constexpr bool Succeeded(Status status) {
  return status >= 0;
}

using AdapterHandle = UINT;

struct OpenAdapterFromLuid {
  LUID luid;              // in
  AdapterHandle adapter;  // out
};
static_assert(sizeof(OpenAdapterFromLuid) == 12);

struct CloseAdapter {
  AdapterHandle adapter;
};

enum class InfoType : UINT { kNodePerformance = 61, kAdapterPerformance = 62 };

struct QueryAdapterInfo {
  AdapterHandle adapter;
  InfoType type;
  void* data;
  UINT size;
};
static_assert(sizeof(QueryAdapterInfo) == 24);

/// Of one engine ("node"). Drivers leave 0 in what they do not report.
struct NodePerformance {
  UINT node;              // in
  UINT physical_adapter;  // in
  std::uint64_t frequency_hz;
  std::uint64_t maximum_frequency_hz;
  std::uint64_t maximum_overclocked_frequency_hz;
  ULONG voltage_mv;
  ULONG maximum_voltage_mv;
  ULONG maximum_overclocked_voltage_mv;
  std::uint64_t transition_latency;
};
static_assert(sizeof(NodePerformance) == 56);

struct AdapterPerformance {
  UINT physical_adapter;  // in
  std::uint64_t memory_frequency_hz;
  std::uint64_t maximum_memory_frequency_hz;
  std::uint64_t maximum_overclocked_memory_frequency_hz;
  std::uint64_t memory_bandwidth;
  std::uint64_t bus_bandwidth;
  ULONG fan_rpm;
  ULONG power;               // tenths of a percent
  ULONG temperature_tenths;  // of a degree Celsius
  UCHAR power_state_override;
};
static_assert(sizeof(AdapterPerformance) == 64 && offsetof(AdapterPerformance, temperature_tenths) == 56);

enum class StatisticsType : UINT { kAdapter = 0, kSegment = 3 };

struct AdapterStatistics {
  ULONG segment_count;
  ULONG node_count;
};

struct SegmentStatistics {
  std::uint64_t commit_limit;
  std::uint64_t bytes_committed;
  std::uint64_t bytes_resident;
  std::uint64_t reserved[2];
  ULONG is_aperture;  // other than 0: memory borrowed from the system
};
static_assert(offsetof(SegmentStatistics, is_aperture) == 40);

union StatisticsResult {
  std::byte room[776];
  AdapterStatistics adapter;
  SegmentStatistics segment;
};

struct QueryStatistics {
  StatisticsType type;  // in
  LUID luid;            // in
  HANDLE process;       // in: null for all processes together
  StatisticsResult result;
  ULONG segment;  // in
};
static_assert(sizeof(QueryStatistics) == 808 && offsetof(QueryStatistics, result) == 24 &&
              offsetof(QueryStatistics, segment) == 800);

/// The entry points. Any may be missing in this version of Windows.
using Calls = base::FunctionTable<base::Optional<"D3DKMTOpenAdapterFromLuid", Status APIENTRY(OpenAdapterFromLuid*)>,
                                  base::Optional<"D3DKMTCloseAdapter", Status APIENTRY(const CloseAdapter*)>,
                                  base::Optional<"D3DKMTQueryAdapterInfo", Status APIENTRY(const QueryAdapterInfo*)>,
                                  base::Optional<"D3DKMTQueryStatistics", Status APIENTRY(QueryStatistics*)>>;

}  // namespace zt::shared::npu::kernel
