#pragma once

#include <string>
#include <vector>

#include "host/doctor/source_metrics.h"
#include "host/metrics/newest_records.h"

namespace zt::telemetry::host {

/// All metrics as rows of the table in docs/metrics.md.
inline std::vector<std::string> MetricRows() {
  std::vector<MetricFamily> families = RecordMetricFamilies();
  const std::vector<MetricFamily> more = SourceMetrics::Families();
  families.insert(families.end(), more.begin(), more.end());
  std::vector<std::string> rows;
  for (const MetricFamily& family : families) {
    rows.push_back("| `" + family.name + "` | " + family.unit + " |");
  }
  return rows;
}

}  // namespace zt::telemetry::host
