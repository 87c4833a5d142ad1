#pragma once

#include "messages/perf_messages.h"

namespace zt::telemetry::collector::performancesamples {

/// Adds the NPUs to the hardware section, from the report of the NPU library.
class ZT_COLLECTOR_EXPORT NPUMsg : public PerfMessages {
 public:
  explicit NPUMsg(const PerfMessages& other);
  NPUMsg();

  /// An empty report adds nothing. Throws `Error` (kind 5, code -1, "Invalid NPU JSON") for a report without NPUs, and
  /// the JSON library's own exceptions for one that is no JSON or holds a value of the wrong type; NPUs added before
  /// stay.
  void PopulateStorageAndUploadProtos() override;
};

}  // namespace zt::telemetry::collector::performancesamples
