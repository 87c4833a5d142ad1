#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "fleet/forward/file_descriptor.h"

namespace zt::telemetry::fleet {

/// Answers whoever asks for the metrics over HTTP, on this machine alone. One asker at a time, each of whom has a
/// second: a scrape is all that it is for.
class MetricsPort {
 public:
  /// Listens on `port` of 127.0.0.1; of 0 on one that is free. Throws `host::Failure` when that cannot be.
  explicit MetricsPort(std::int64_t port);

  /// The port that it listens on.
  std::uint16_t Port() const;
  int Descriptor() const { return listener_.Get(); }

  /// Answers those who have asked by now with what `text` gives.
  void Serve(const std::function<std::string()>& text) const;

 private:
  FileDescriptor listener_;
};

}  // namespace zt::telemetry::fleet
