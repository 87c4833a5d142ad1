#pragma once

#include <vector>

#include "host/doctor/report_view.h"
#include "host/metrics/open_metrics.h"

namespace zt::telemetry::host {

/// Makes metrics of what an inspection finds: for each source whether it is there, whether it answered as it should,
/// and how long asking took. One that a machine does not have did not fail.
class SourceMetrics : public ReportView {
 public:
  /// `metrics` must outlive the view.
  explicit SourceMetrics(OpenMetrics& metrics) : metrics_(metrics) {}

  void Show(const inspection::SourceReport& report) override;
  void Finish() override {}

  /// The metrics that it makes.
  static std::vector<MetricFamily> Families();

 private:
  OpenMetrics& metrics_;
};

}  // namespace zt::telemetry::host
