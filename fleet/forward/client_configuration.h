#pragma once

#include <librdkafka/rdkafka.h>

#include <memory>
#include <string>

#include "fleet/forward/settings.h"

namespace zt::telemetry::fleet {

struct DestroyConfiguration {
  void operator()(rd_kafka_conf_t* configuration) const { rd_kafka_conf_destroy(configuration); }
};
using ClientConfiguration = std::unique_ptr<rd_kafka_conf_t, DestroyConfiguration>;

/// What is wrong with a property: the client does not know it, does not take its value, or it is one that this
/// program's promises rest on. Empty where nothing is.
std::string ProblemOf(const ClientProperty& property);

/// The client's configuration: idempotent, acknowledged by all replicas, without an end to its patience, bounded.
/// Throws `host::Failure` when the client refuses it.
ClientConfiguration ConfigurationOf(const KafkaSettings& kafka);

}  // namespace zt::telemetry::fleet
