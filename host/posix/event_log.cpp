#include "host/event_log.h"

#include "host/failure.h"

namespace zt::telemetry::host {
namespace {

Failure NoEventLog() {
  return WrongUsage("this system has no Event Log; it is Windows' own");
}

}  // namespace

std::unique_ptr<EventLog> ConnectToEventLog() {
  throw NoEventLog();
}

void AddEventSource() {
  throw NoEventLog();
}

void RemoveEventSource() {
  throw NoEventLog();
}

}  // namespace zt::telemetry::host
