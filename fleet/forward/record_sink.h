#pragma once

#include <cstdint>
#include <string>

#include "fleet/forward/record.h"

namespace zt::telemetry::fleet {

/// What became of the records of one source: of a file, or of what was read from standard input. Must outlive its
/// pending ones.
struct Delivery {
  std::int64_t pending = 0;  // given to the sink and not answered for
  std::int64_t failed = 0;   // answered for, and nowhere

  bool IsDone() const { return pending == 0; }
  bool IsComplete() const { return pending == 0 && failed == 0; }
};

/// Where records go.
class RecordSink {
 public:
  virtual ~RecordSink() = default;

  /// Takes a record, and waits until there is room for it. False when the program shall end meanwhile: it was not
  /// taken.
  virtual bool Send(const Record& record, Delivery& delivery) = 0;
  /// The same of what is no record; `source` tells where it stood.
  virtual bool SendDead(const BadRecord& bad, const std::string& source, Delivery& delivery) = 0;
  /// Whatever is due meanwhile: delivery reports, metrics. Waits at most so many milliseconds for something to do.
  virtual void Tick(int milliseconds) = 0;
  /// Whether the program shall end.
  virtual bool Stops() const = 0;
};

}  // namespace zt::telemetry::fleet
