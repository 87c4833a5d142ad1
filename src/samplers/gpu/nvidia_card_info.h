#pragma once

#include "samplers/gpu/abstract_gpu_vendor.h"
#include "zt/zt_collector_export.h"

namespace zt::telemetry::collector::performancesamples {

/// NVIDIA's cards, through its management library (NVML). All objects share the handle of the card in hand, so that two
/// passes must not run at the same time.
class ZT_COLLECTOR_EXPORT NvidiaCardInfo : public AbstractGPUVendor {
 public:
  NvidiaCardInfo();
  /// Takes one start of the library back as soon as any object has ever opened a card: also after a pass in which the
  /// library did not start.
  ~NvidiaCardInfo() override;
  NvidiaCardInfo(const NvidiaCardInfo&) = delete;
  NvidiaCardInfo& operator=(const NvidiaCardInfo&) = delete;

  /// Fails (kind 5, the library's status and its text) when the library is missing (12), does not start, or does not
  /// open one of its cards; the cards that it does open are appended all the same. A figure that cannot be read stays 0
  /// or empty.
  common::Error QueryValues(std::vector<types::GraphicCardInfo>* cards) override;

 private:
  void RetrieveBoardInfo(types::GraphicCardInfo* card);
  void RetrievePerformanceInfo(types::GraphicCardInfo* card);
};

}  // namespace zt::telemetry::collector::performancesamples
