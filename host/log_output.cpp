#include "host/log_output.h"

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "host/consent/consented_texts.h"
#include "host/failure.h"
#include "host/log_appender.h"
#include "host/program_environment.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t kLargestLog = std::uintmax_t{4} << 20;

// The one before it is kept: what happened last is never gone.
void RenameLargeLog(const fs::path& file) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(file, error);
  if (error || size < kLargestLog) return;
  fs::path earlier = file;
  earlier += ".1";
  fs::rename(file, earlier, error);  // else it goes on growing
}

std::ofstream OpenLog(const fs::path& file) {
  RenameLargeLog(file);
  errno = 0;
  std::ofstream stream(file, std::ios::binary | std::ios::app);
  if (stream.is_open()) return stream;
  throw WrongUsage("the log file " + PathText(file) + " cannot be written: " + std::generic_category().message(errno));
}

bool GoesToFile(const CommonSettings& settings) {
  return settings.log_file.has_value() && settings.log_target != LogTarget::kEventLog;
}

}  // namespace

LogOutput::LogOutput(const CommonSettings& settings, std::ostream& err)
    : settings_(settings),
      event_log_(settings.log_target == LogTarget::kEventLog ? ConnectToEventLog() : nullptr),
      file_(GoesToFile(settings) ? OpenLog(*settings.log_file) : std::ofstream()),
      stream_(GoesToFile(settings) ? file_ : err) {}

void LogOutput::Write(const plog::Record& record) {
  if (event_log_ != nullptr)
    return event_log_->Write(record.getSeverity(), record.getFunc() + (": " + Message(record)));
  stream_ << LogLine(record, Message(record)) << std::endl;
}

void LogOutput::Complain(const std::string& text) {
  if (event_log_ != nullptr) event_log_->Write(plog::error, text);
}

std::string LogOutput::Message(const plog::Record& record) const {
  return ConsentedMessage(settings_.consent, MessageText(record));
}

}  // namespace zt::telemetry::host
