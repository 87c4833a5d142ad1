#pragma once

#include <string>

#include "fleet/forward/upload_topic.h"

namespace zt::telemetry::fleet {

/// A record on its way to Kafka.
struct Record {
  std::string type;              // full name of its message
  std::string bytes;             // protobuf's form
  std::string machine;           // its key: what keeps a machine's records in one partition; empty where it names none
  std::string collection_id;     // empty where it has none
  std::string contract_version;  // of the program that made it
  /// Sixteen hexadecimal digits: the same for a record that is sent again, another one for a record of other samples.
  std::string part;
  UploadTopic topic = UploadTopic::kMixed;  // of an upload record
};

/// What was given and is no record.
struct BadRecord {
  std::string bytes;   // as they came
  std::string reason;  // what was wrong, and what was expected
};

}  // namespace zt::telemetry::fleet
