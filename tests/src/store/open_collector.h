#pragma once

#include "collector/performance_samples.h"

namespace zt::telemetry::collector::performancesamples {

/// A collector whose uploads of the hourly summaries can be called by themselves.
class OpenCollector : public PerformanceSamples {
 public:
  using PerformanceSamples::UploadNetworkSamples;
  using PerformanceSamples::UploadThermalSamples;
};

}  // namespace zt::telemetry::collector::performancesamples
