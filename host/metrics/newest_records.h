#pragma once

#include "host/metrics/open_metrics.h"
#include "host/outbox/outbox.h"
#include "host/progress.h"

namespace zt::telemetry::host {

/// Adds the figures of the newest current record of each kind: live, thermal, network and what is stored; and of each
/// what it is, and when it arrived. Throws `Failure` for one that cannot be read.
void AddNewestRecords(const Outbox& outbox, OpenMetrics& metrics, Progress& progress);

/// Every metric that a record may give, in the order of the export.
std::vector<MetricFamily> RecordMetricFamilies();

}  // namespace zt::telemetry::host
