#pragma once

#include "samplers/gpu/abstract_gpu_vendor.h"
#include "samplers/gpu/adlx_helper.h"
#include "zt/zt_collector_export.h"

namespace zt::telemetry::collector::performancesamples {

/// AMD's cards, through its device library (ADLX) and, for their buses, the registry. The library is stopped with this
/// object.
class ZT_COLLECTOR_EXPORT AmdCardInfo : public AbstractGPUVendor {
 public:
  AmdCardInfo();
  ~AmdCardInfo() override;

  /// Fails (kind 5, the library's result) when the library is missing or does not start, or gives no monitoring
  /// services or no list of cards; nothing is appended then. A figure that a card does not have stays 0; a card that
  /// the list does not give is passed over.
  common::Error QueryValues(std::vector<types::GraphicCardInfo>* cards) override;

  /// AMD's library, as the last query left it.
  const ADLXHelper& Library() const { return adlx_; }

 private:
  ADLXHelper adlx_;
};

}  // namespace zt::telemetry::collector::performancesamples
