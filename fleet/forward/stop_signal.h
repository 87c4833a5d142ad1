#pragma once

namespace zt::telemetry::fleet {

/// From its making on, the signals that ask a program to end (SIGTERM, SIGINT) are noted and no longer end it at once.
class StopSignal {
 public:
  StopSignal();

  static bool Came();
};

}  // namespace zt::telemetry::fleet
