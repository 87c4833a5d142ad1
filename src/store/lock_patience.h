#pragma once

#include <sqlite3.h>

#include <chrono>

namespace zt::telemetry::collector::performancesamples {

/// How long a call waits for other components' locks, all its connections and attempts together. A connection that
/// was not given any patience does not wait at all.
class LockPatience {
 public:
  explicit LockPatience(std::chrono::milliseconds limit) : left_(limit) {}
  LockPatience(const LockPatience&) = delete;
  LockPatience& operator=(const LockPatience&) = delete;

  /// Lets a connection, which must not outlive this object, wait.
  void GiveTo(sqlite3* database);

 private:
  bool Wait();

  std::chrono::nanoseconds left_;
};

}  // namespace zt::telemetry::collector::performancesamples
