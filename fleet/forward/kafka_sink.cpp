#include "fleet/forward/kafka_sink.h"

#include <poll.h>

#include <exception>

#include "host/whole_file.h"

namespace zt::telemetry::fleet {
namespace {

constexpr std::chrono::seconds kMetricsEvery{5};
constexpr int kWaitForRoomMs = 100;
constexpr std::int64_t kTickEvery = 500;  // records

}  // namespace

KafkaSink::KafkaSink(const Settings& settings, Counters& counters, std::ostream& log)
    : settings_(settings), counters_(counters), log_(log), producer_(settings.kafka, counters, log) {
  WriteMetricsFile();  // says at once where it cannot be
  if (settings.metrics.port.has_value()) {
    port_.emplace(*settings.metrics.port);
    if (*settings.metrics.port == 0) {
      log << "zt-telemetry-forward: metrics at http://127.0.0.1:" << port_->Port() << "/metrics" << std::endl;
    }
  }
}

KafkaSink::~KafkaSink() {
  try {
    counters_.waiting = producer_.Waiting();
    WriteMetricsFile();
  } catch (const std::exception& failure) {
    log_ << "zt-telemetry-forward: " << failure.what() << std::endl;
  }
}

template <typename TrySend>
bool KafkaSink::SendWhenThereIsRoom(const TrySend& try_send) {
  if (++sent_since_tick_ >= kTickEvery) Tick(0);
  if (try_send()) return true;
  ++counters_.queue_full_waits;
  while (!Stops()) {
    Tick(kWaitForRoomMs);
    if (try_send()) return true;
  }
  return false;
}

bool KafkaSink::Send(const Record& record, Delivery& delivery) {
  return SendWhenThereIsRoom([&] { return producer_.TrySend(record, delivery); });
}

bool KafkaSink::SendDead(const BadRecord& bad, const std::string& source, Delivery& delivery) {
  return SendWhenThereIsRoom([&] { return producer_.TrySendDead(bad, source, delivery); });
}

void KafkaSink::Tick(int milliseconds) {
  sent_since_tick_ = 0;
  producer_.Poll(milliseconds);
  TellMetrics();
}

void KafkaSink::TellMetrics() {
  const auto now = std::chrono::steady_clock::now();
  if (port_.has_value()) {
    port_->Serve([this] {
      counters_.waiting = producer_.Waiting();
      return MetricsText(counters_);
    });
  }
  if (now < metrics_due_) return;
  metrics_due_ = now + kMetricsEvery;
  counters_.waiting = producer_.Waiting();
  try {
    WriteMetricsFile();
  } catch (const std::exception& failure) {
    // A disk that is full by now stops no record.
    log_ << "zt-telemetry-forward: " << failure.what() << std::endl;
  }
}

void KafkaSink::WriteMetricsFile() {
  if (!settings_.metrics.file.has_value()) return;
  host::WholeFile file(*settings_.metrics.file, "metrics.file");
  file.Stream() << MetricsText(counters_);
  file.Finish();
}

bool CountingSink::Send(const Record& /*record*/, Delivery& /*delivery*/) {
  return !Stops();
}

bool CountingSink::SendDead(const BadRecord& bad, const std::string& source, Delivery& /*delivery*/) {
  log_ << source << ": " << bad.reason << std::endl;
  return !Stops();
}

void CountingSink::Tick(int milliseconds) {
  ::poll(nullptr, 0, milliseconds);
}

}  // namespace zt::telemetry::fleet
