#include "fleet/forward/counters.h"

#include "host/metrics/open_metrics.h"

namespace zt::telemetry::fleet {

std::string MetricsText(const Counters& counters) {
  host::OpenMetrics metrics;
  const auto add = [&metrics](const char* name, const char* unit, const char* help, std::int64_t value) {
    metrics.Add({host::MetricName({"forward", name, unit}), unit, help}, {}, static_cast<double>(value));
  };
  add("read", "records", "Records that were read since the start", counters.records_read);
  add("read", "bytes", "Their bytes", counters.bytes_read);
  add("read", "texts", "Hand-overs without figures that were read, and go nowhere", counters.texts_read);
  add("bad", "records", "What was read and is no record", counters.bad_records);
  add("delivered", "records", "Records that all replicas have", counters.delivered);
  add("dead", "letters", "What all replicas have in the topic of dead letters", counters.dead_letters);
  add("failed", "records", "Records that no broker took; their files are kept", counters.failed);
  add("waiting", "records", "Records that wait for their delivery reports", counters.waiting);
  add("queue_full", "waits", "Times that reading waited for room in the queue", counters.queue_full_waits);
  add("client", "errors", "Errors that the Kafka client told of", counters.client_errors);
  add("done", "files", "Spool files all of whose records were delivered", counters.files_done);
  add("kept", "files", "Spool files that are kept for another try", counters.files_kept);
  if (counters.last_delivery.has_value()) {
    metrics.Add({"zt_forward_last_delivery_timestamp_seconds", "seconds", "When the last delivery was reported"}, {},
                static_cast<double>(counters.last_delivery->time_since_epoch().count()));
  }
  return metrics.Text();
}

}  // namespace zt::telemetry::fleet
