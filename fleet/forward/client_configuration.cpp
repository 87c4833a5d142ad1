#include "fleet/forward/client_configuration.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "host/failure.h"

namespace zt::telemetry::fleet {
namespace {

// That nothing is lost, doubled or out of order rests on these; the rest of them has settings of its own.
constexpr std::array<std::string_view, 17> kOwnProperties = {
    "acks",
    "request.required.acks",
    "bootstrap.servers",
    "metadata.broker.list",
    "compression.codec",
    "compression.type",
    "delivery.timeout.ms",
    "enable.gapless.guarantee",
    "enable.idempotence",
    "message.send.max.retries",
    "message.timeout.ms",
    "partitioner",
    "queue.buffering.max.kbytes",
    "queue.buffering.max.messages",
    "queuing.strategy",
    "retries",
    "test.mock.num.brokers",
};

constexpr std::size_t kTextSize = 512;

std::string Set(rd_kafka_conf_t& configuration, const std::string& name, const std::string& value) {
  std::array<char, kTextSize> text{};
  const auto result = rd_kafka_conf_set(&configuration, name.c_str(), value.c_str(), text.data(), text.size());
  return result == RD_KAFKA_CONF_OK ? std::string() : std::string(text.data());
}

}  // namespace

std::string ProblemOf(const ClientProperty& property) {
  if (std::ranges::find(kOwnProperties, property.name) != kOwnProperties.end()) {
    return "this property is the program's own: its promises rest on it";
  }
  const ClientConfiguration configuration(rd_kafka_conf_new());
  const std::string refused = Set(*configuration, property.name, property.value);
  return refused.empty() ? refused : "the Kafka client refuses it: " + refused;
}

ClientConfiguration ConfigurationOf(const KafkaSettings& kafka) {
  ClientConfiguration configuration(rd_kafka_conf_new());
  const auto set = [&configuration](const std::string& name, const std::string& value) {
    const std::string refused = Set(*configuration, name, value);
    if (!refused.empty())
      throw host::Failure(host::kExitWrongUsage, "the Kafka client refuses its settings: " + refused);
  };
  set("client.id", "zt-telemetry-forward");
  set("bootstrap.servers", kafka.brokers);
  set("enable.idempotence", "true");
  set("acks", "all");
  // A broker that is away for a day costs nothing but time: what waits is bounded by the queue, not by the clock.
  set("message.timeout.ms", "0");
  set("compression.codec", kafka.compression);
  // Keys hash as other clients' do, so that whoever adds records to the topic finds the same partition.
  set("partitioner", "murmur2_random");
  set("queue.buffering.max.messages", std::to_string(kafka.queue_messages));
  set("queue.buffering.max.kbytes", std::to_string(kafka.queue_kibibytes));
  set("linger.ms", "50");
  for (const ClientProperty& property : kafka.client) set(property.name, property.value);
  return configuration;
}

}  // namespace zt::telemetry::fleet
