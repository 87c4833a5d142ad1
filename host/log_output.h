#pragma once

#include <plog/Record.h>

#include <fstream>
#include <ostream>
#include <string>

#include "host/command.h"

namespace zt::telemetry::host {

/// Where a command's log lines go: to the log file where one is set, else to standard error. What the consent holds
/// back is not in them.
class LogOutput {
 public:
  /// Opens the log file, to write behind what it holds; one that has grown large is renamed first. Both must outlive
  /// it. Throws `Failure` with wrong usage when it cannot be written.
  LogOutput(const CommonSettings& settings, std::ostream& err);

  void Write(const plog::Record& record);
  /// The message of a log record, UTF-8, without what is held back.
  std::string Message(const plog::Record& record) const;

 private:
  const CommonSettings& settings_;
  std::ofstream file_;
  std::ostream& stream_;
};

}  // namespace zt::telemetry::host
