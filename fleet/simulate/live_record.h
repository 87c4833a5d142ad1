#pragma once

#include <array>
#include <cstdint>

#include "fleet/simulate/machine_facts.h"
#include "host/seed/laptop_hours.h"
#include "performance_samples_upload.pb.h"

namespace zt::telemetry::fleet {

/// What a machine's live records carry on from one to the next.
struct LiveState {
  bool has_sent = false;
  std::array<std::uint64_t, host::kLaptopPrograms.size()> processor_seconds{};
  std::array<std::uint64_t, host::kLaptopPrograms.size()> peak_bytes{};
  bool is_new = true;
};

/// Makes `record` the live record of a laptop in an hour, figure by figure as the collector makes it of the simulated
/// machine in that hour; a machine of other facts lacks what they say, and has figures of its own where they say so.
void FillLiveRecord(const host::LaptopHour& hour, const MachineFacts& facts, LiveState& state,
                    contract::upload::log::PcLogPerformanceSamplesAsCDM& record);

}  // namespace zt::telemetry::fleet
