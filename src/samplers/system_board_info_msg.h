#pragma once

#include "messages/perf_messages.h"

namespace zt::telemetry::collector::performancesamples {

/// System board: adds nothing to a live record, since the hourly thermal records carry it.
class ZT_COLLECTOR_EXPORT SystemBoardInfoMsg : public PerfMessages {
 public:
  explicit SystemBoardInfoMsg(const PerfMessages& other);
  SystemBoardInfoMsg();
  void PopulateStorageAndUploadProtos() override;
};

}  // namespace zt::telemetry::collector::performancesamples
