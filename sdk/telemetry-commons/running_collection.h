#pragma once

#include <typeinfo>

namespace zt::telemetry::common {

/// The right to collect, held while it lives, which one collector of each class can have: all collectors of a class
/// share what their class keeps for the process. A call that does not get it, be it from inside the collection that
/// runs or on another thread, touches nothing and is reported as an `Error`.
class RunningCollection {
 public:
  explicit RunningCollection(const std::type_info& collector);
  ~RunningCollection();
  RunningCollection(const RunningCollection&) = delete;
  RunningCollection& operator=(const RunningCollection&) = delete;

  /// False when a collector of the class was collecting already, further up on this thread or on another one.
  bool IsGranted() const { return granted_; }

 private:
  const std::type_info& collector_;
  bool granted_ = false;
};

}  // namespace zt::telemetry::common
