#pragma once

#include <librdkafka/rdkafka.h>

#include <array>
#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "fleet/forward/counters.h"
#include "fleet/forward/record_sink.h"
#include "fleet/forward/settings.h"

namespace zt::telemetry::fleet {

/// A Kafka client that produces. Everything happens on the thread that calls, delivery reports included; the client's
/// own threads do the network's work.
class Producer {
 public:
  /// `log` is told what the client complains of. Throws `host::Failure` when the client cannot be made.
  Producer(const KafkaSettings& kafka, Counters& counters, std::ostream& log);
  ~Producer();
  Producer(const Producer&) = delete;
  Producer& operator=(const Producer&) = delete;

  /// Hands a record to the client; false when its queue has no room. Throws `host::Failure` when the client cannot go
  /// on.
  bool TrySend(const Record& record, Delivery& delivery);
  bool TrySendDead(const BadRecord& bad, const std::string& source, Delivery& delivery);

  /// Takes delivery reports, and waits at most so many milliseconds for the first one. Throws `host::Failure` when the
  /// client cannot go on.
  void Poll(int milliseconds);

  /// Has the client send at once what waits to be sent together with more, and waits for the reports at most so long.
  void Flush(int milliseconds);

  std::int64_t Waiting() const;

 private:
  struct Destroy {
    void operator()(rd_kafka_t* client) const { rd_kafka_destroy(client); }
  };
  struct Headers;

  static void OnDelivery(rd_kafka_t* client, const rd_kafka_message_t* message, void* opaque);
  static void OnError(rd_kafka_t* client, int error, const char* reason, void* opaque);
  void Answered(const rd_kafka_message_t& message);
  bool BuryRefused(const rd_kafka_message_t& message, Delivery& delivery);
  bool Produce(const std::string& topic, const std::string& key, const void* bytes, std::size_t size, Headers headers,
               Delivery& delivery);
  const std::string& TopicOf(const Record& record) const;
  void RequireNoFatalError() const;

  const KafkaSettings& kafka_;
  Counters& counters_;
  std::ostream& log_;
  std::string storage_type_;
  std::array<std::string, kUploadTopicSuffixes.size()> upload_topics_;
  std::string last_complaint_;
  bool abandoned_ = false;  // nobody looks at the deliveries any more
  std::unique_ptr<rd_kafka_t, Destroy> client_;
};

}  // namespace zt::telemetry::fleet
