#pragma once

#include <sqlite3.h>

#include <chrono>

#include "base/time_limit.h"

namespace zt::telemetry::collector::performancesamples {

/// How long a call works on a database, all its connections and attempts together. The file says what its tables are: a
/// view that never ends must not keep the host.
class WorkLimit {
 public:
  explicit WorkLimit(std::chrono::milliseconds limit) : left_(limit) {}
  WorkLimit(const WorkLimit&) = delete;
  WorkLimit& operator=(const WorkLimit&) = delete;

  /// Has a connection, which must not outlive this object, end its statements with SQLITE_INTERRUPT once the limit is
  /// reached.
  void GiveTo(sqlite3* database);

 private:
  base::TimeLimit left_;
};

}  // namespace zt::telemetry::collector::performancesamples
