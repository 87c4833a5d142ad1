#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace zt::telemetry::fleet {

/// What the program has done since it started.
struct Counters {
  std::int64_t records_read = 0;
  std::int64_t bytes_read = 0;  // of records
  std::int64_t texts_read = 0;  // hand-overs without figures, which go nowhere
  std::int64_t bad_records = 0;
  std::int64_t delivered = 0;
  std::int64_t dead_letters = 0;  // delivered to the topic of dead letters
  std::int64_t failed = 0;
  std::int64_t waiting = 0;           // for their delivery reports
  std::int64_t queue_full_waits = 0;  // times that reading waited for room
  std::int64_t client_errors = 0;     // that the Kafka client told of: brokers that are away, and the like
  std::int64_t files_done = 0;
  std::int64_t files_kept = 0;  // for another try
  std::optional<std::chrono::sys_seconds> last_delivery;
};

/// The counters in OpenMetrics' text form.
std::string MetricsText(const Counters& counters);

}  // namespace zt::telemetry::fleet
