#pragma once

#include <plog/Record.h>

#include <fstream>
#include <memory>
#include <ostream>
#include <string>

#include "host/command.h"
#include "host/event_log.h"

namespace zt::telemetry::host {

/// Where a command's log lines go: to the Event Log or to the log file where that is set, else to standard error. What
/// the consent holds back is not in them.
class LogOutput {
 public:
  /// Opens the log file, to write behind what it holds; one that has grown large is renamed first. Both must outlive
  /// it. Throws `Failure` with wrong usage when it cannot be written, or where there is no Event Log for this program.
  LogOutput(const CommonSettings& settings, std::ostream& err);

  void Write(const plog::Record& record);
  /// A complaint of this program's own, which is told on standard error elsewhere: for those who read the Event Log.
  void Complain(const std::string& text);
  /// The message of a log record, UTF-8, without what is held back.
  std::string Message(const plog::Record& record) const;

 private:
  const CommonSettings& settings_;
  std::unique_ptr<EventLog> event_log_;  // where the log goes there
  std::ofstream file_;
  std::ostream& stream_;
};

}  // namespace zt::telemetry::host
