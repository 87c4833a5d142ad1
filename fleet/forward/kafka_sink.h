#pragma once

#include <chrono>
#include <optional>
#include <ostream>
#include <string>

#include "fleet/forward/counters.h"
#include "fleet/forward/metrics_port.h"
#include "fleet/forward/producer.h"
#include "fleet/forward/record_sink.h"
#include "fleet/forward/settings.h"
#include "fleet/forward/stop_signal.h"

namespace zt::telemetry::fleet {

/// Produces records to Kafka, and tells by the way what it does.
class KafkaSink : public RecordSink {
 public:
  KafkaSink(const Settings& settings, Counters& counters, std::ostream& log);
  ~KafkaSink() override;

  bool Send(const Record& record, Delivery& delivery) override;
  bool SendDead(const BadRecord& bad, const std::string& source, Delivery& delivery) override;
  void Tick(int milliseconds) override;
  bool Stops() const override { return StopSignal::Came(); }

 private:
  template <typename TrySend>
  bool SendWhenThereIsRoom(const TrySend& try_send);
  void TellMetrics();
  void WriteMetricsFile();

  const Settings& settings_;
  Counters& counters_;
  std::ostream& log_;
  StopSignal stop_signal_;
  std::optional<MetricsPort> port_;
  Producer producer_;
  std::int64_t sent_since_tick_ = 0;
  std::chrono::steady_clock::time_point metrics_due_;
};

/// Counts what it is given, and gives it nowhere: for trying an input out.
class CountingSink : public RecordSink {
 public:
  explicit CountingSink(std::ostream& log) : log_(log) {}

  bool Send(const Record& record, Delivery& delivery) override;
  bool SendDead(const BadRecord& bad, const std::string& source, Delivery& delivery) override;
  void Tick(int milliseconds) override;
  bool Stops() const override { return StopSignal::Came(); }

 private:
  std::ostream& log_;
  StopSignal stop_signal_;
};

}  // namespace zt::telemetry::fleet
