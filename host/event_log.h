#pragma once

#include <plog/Severity.h>

#include <memory>
#include <string>

namespace zt::telemetry::host {

/// The system's own log of what programs report, where administrators look: Windows' Event Log, "Application", under
/// the source "zt-telemetry-host".
class EventLog {
 public:
  virtual ~EventLog() = default;

  /// A report, UTF-8.
  virtual void Write(plog::Severity severity, const std::string& text) = 0;
};

/// Throws `Failure` with wrong usage where the system has no such log, and where the program is not known to it.
std::unique_ptr<EventLog> ConnectToEventLog();

/// Makes the program known to the log, for as long as the system is installed; takes an administrator's rights. Throws
/// `Failure`.
void AddEventSource();
/// Undoes that. Throws `Failure`.
void RemoveEventSource();

}  // namespace zt::telemetry::host
