#include "host/event_log.h"

#include <windows.h>
#include <plog/Appenders/EventLogAppender.h>
#include <plog/Formatters/MessageOnlyFormatter.h>

#include "host/failure.h"
#include "zt/text/wide_text.h"

namespace zt::telemetry::host {
namespace {

constexpr plog::util::nchar kSource[] = PLOG_NSTR("zt-telemetry-host");
constexpr wchar_t kSourceKey[] = L"SYSTEM\\CurrentControlSet\\Services\\EventLog\\Application\\zt-telemetry-host";

class OpenedLog : public EventLog {
 public:
  void Write(plog::Severity severity, const std::string& text) override {
    plog::Record record(severity, "", 0, "", nullptr, 0);
    record << text::ToWide(text);
    appender_.write(record);
  }

 private:
  plog::EventLogAppender<plog::MessageOnlyFormatter> appender_{kSource};
};

}  // namespace

// Windows would take the reports of an unknown source as well, and show each with an apology instead of its text.
std::unique_ptr<EventLog> ConnectToEventLog() {
  if (!plog::EventLogAppenderRegistry::exists(kSource)) {
    throw WrongUsage(
        "--log-to event-log: the Event Log does not know this program; run \"zt-telemetry-host event-source add\" once "
        "as an administrator");
  }
  return std::make_unique<OpenedLog>();
}

void AddEventSource() {
  if (plog::EventLogAppenderRegistry::add(kSource)) return;
  throw Failure(kExitFailed, "the Event Log's registry key cannot be written; that takes an administrator's rights");
}

// Not by plog, which would try to delete the key of the whole log too.
void RemoveEventSource() {
  const LSTATUS status = ::RegDeleteKeyW(HKEY_LOCAL_MACHINE, kSourceKey);
  if (status == ERROR_SUCCESS) return;
  if (status == ERROR_FILE_NOT_FOUND) throw Failure(kExitFailed, "the Event Log does not know this program");
  throw Failure(kExitFailed, "the Event Log's registry key cannot be deleted (status " + std::to_string(status) +
                                 "); that takes an administrator's rights");
}

}  // namespace zt::telemetry::host
