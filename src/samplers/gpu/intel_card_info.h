#pragma once

#include <cstdint>

#include "samplers/gpu/abstract_gpu_vendor.h"
#include "zt/shared/wmi/wmi_client.h"
#include "zt/zt_collector_export.h"

namespace zt::telemetry::collector::performancesamples {

/// The code of the failure that means: no graphics of Intel's here.
inline constexpr std::int64_t kNoIntelAdapter = 1;

/// Intel's graphics, as far as WMI knows of it: one card, however many there are, without loads, clocks or memory.
class ZT_COLLECTOR_EXPORT IntelCardInfo : public AbstractGPUVendor {
 public:
  /// `wmi` outlives this object.
  explicit IntelCardInfo(shared::wmi::WMIClient& wmi);

  /// Fails with "Intel GPU not found" (kind 5, code `kNoIntelAdapter`) on a machine without one, and with whatever the
  /// client throws.
  common::Error QueryValues(std::vector<types::GraphicCardInfo>* cards) override;

 private:
  common::Error AddCard(std::vector<types::GraphicCardInfo>& cards);

  shared::wmi::WMIClient& wmi_;
};

}  // namespace zt::telemetry::collector::performancesamples
