#include "host/doctor/source_metrics.h"

#include <chrono>

namespace zt::telemetry::host {
namespace {

using inspection::SourceState;

const MetricFamily& Duration() {
  static const MetricFamily family = {"zt_source_duration_seconds", "seconds", "Time that asking the source took."};
  return family;
}

const MetricFamily& Present() {
  static const MetricFamily family = {"zt_source_present", "", "1 when the machine has the source, else 0."};
  return family;
}

const MetricFamily& Success() {
  static const MetricFamily family = {"zt_source_success", "",
                                      "0 when the source is there, or should be, and did not answer; else 1."};
  return family;
}

}  // namespace

void SourceMetrics::Show(const inspection::SourceReport& report) {
  const Labels labels = {{"source", report.source}};
  metrics_.Add(Duration(), labels, std::chrono::duration<double>(report.time).count());
  metrics_.Add(Present(), labels, report.state == SourceState::kAbsent ? 0 : 1);
  metrics_.Add(Success(), labels, report.state == SourceState::kFailed ? 0 : 1);
}

std::vector<MetricFamily> SourceMetrics::Families() {
  return {Duration(), Present(), Success()};
}

}  // namespace zt::telemetry::host
