#include "windows/kernel_figures.h"

#include <algorithm>

#include "npu_rules.h"

namespace zt::shared::npu {
namespace {

using kernel::Calls;
using kernel::Succeeded;

// Linked adapters have several; an NPU is one.
constexpr UINT kPhysicalAdapter = 0;

// More than any adapter has.
constexpr ULONG kMaximumEngines = 64;

// An adapter opened for questions.
class Adapter {
 public:
  Adapter(const Calls& calls, const LUID& luid) : calls_(calls) {
    auto* const open = calls.Get<"D3DKMTOpenAdapterFromLuid">();
    const bool can_be_closed = calls.Get<"D3DKMTCloseAdapter">() != nullptr;
    kernel::OpenAdapterFromLuid request{luid, 0};
    is_open_ = open != nullptr && can_be_closed && Succeeded(open(&request));
    handle_ = request.adapter;
  }
  ~Adapter() {
    const kernel::CloseAdapter request{handle_};
    if (is_open_) calls_.Get<"D3DKMTCloseAdapter">()(&request);
  }
  Adapter(const Adapter&) = delete;
  Adapter& operator=(const Adapter&) = delete;

  template <typename Info>
  bool Ask(kernel::InfoType type, Info& info) const {
    auto* const query = calls_.Get<"D3DKMTQueryAdapterInfo">();
    if (!is_open_ || query == nullptr) return false;
    const kernel::QueryAdapterInfo request{handle_, type, &info, sizeof(info)};
    return Succeeded(query(&request));
  }

 private:
  const Calls& calls_;
  kernel::AdapterHandle handle_ = 0;
  bool is_open_ = false;
};

bool AskStatistics(const Calls& calls, kernel::QueryStatistics& request) {
  auto* const query = calls.Get<"D3DKMTQueryStatistics">();
  return query != nullptr && Succeeded(query(&request));
}

// The engines share a clock on some NPUs and rest one by one on others: the fastest tells how the NPU runs.
std::uint64_t FastestEngine(const Adapter& adapter, ULONG engines) {
  std::uint64_t fastest = 0;
  for (ULONG engine = 0; engine < std::min(engines, kMaximumEngines); ++engine) {
    kernel::NodePerformance performance{};
    performance.node = engine;
    performance.physical_adapter = kPhysicalAdapter;
    if (!adapter.Ask(kernel::InfoType::kNodePerformance, performance)) continue;
    fastest = std::max(fastest, performance.frequency_hz);
  }
  return fastest;
}

// All segments or nothing: a part of the memory would look like the whole.
std::optional<MemoryBytes> MemoryInUse(const Calls& calls, const LUID& luid, ULONG segments) {
  MemoryBytes in_use;
  for (ULONG segment = 0; segment < segments; ++segment) {
    kernel::QueryStatistics request{};
    request.type = kernel::StatisticsType::kSegment;
    request.luid = luid;
    request.segment = segment;
    if (!AskStatistics(calls, request)) return std::nullopt;
    const kernel::SegmentStatistics& statistics = request.result.segment;
    std::uint64_t& sum = statistics.is_aperture != 0 ? in_use.shared : in_use.dedicated;
    sum += statistics.bytes_resident;
  }
  return segments != 0 ? std::optional(in_use) : std::nullopt;
}

}  // namespace

void ReadKernelFigures(const Calls& calls, const LUID& luid, Npu& npu) {
  const Adapter adapter(calls, luid);
  kernel::AdapterPerformance performance{};
  performance.physical_adapter = kPhysicalAdapter;
  if (adapter.Ask(kernel::InfoType::kAdapterPerformance, performance)) {
    npu.temperature_celsius = CelsiusFromTenths(performance.temperature_tenths);
    npu.memory_frequency_hz = Reported(performance.memory_frequency_hz);
  }
  kernel::QueryStatistics request{};
  request.type = kernel::StatisticsType::kAdapter;
  request.luid = luid;
  if (!AskStatistics(calls, request)) return;
  npu.engine_frequency_hz = Reported(FastestEngine(adapter, request.result.adapter.node_count));
  npu.memory_in_use = MemoryInUse(calls, luid, request.result.adapter.segment_count);
}

}  // namespace zt::shared::npu
