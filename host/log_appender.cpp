#include "host/log_appender.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <sstream>
#include <string>
#include <string_view>

#include "zt/text/wide_text.h"

namespace zt::telemetry::host {
namespace {

// plog's messages are wide texts where the build asks for it.
[[maybe_unused]] std::string Utf8(const char* text) {
  return text;
}
[[maybe_unused]] std::string Utf8(const wchar_t* text) {
  return text::ToUtf8(text);
}

std::string TimeText(const plog::util::Time& time) {
  std::tm local{};
  plog::util::localtime_s(&local, &time.time);
  constexpr std::size_t kLongest = 64;
  std::array<char, kLongest> text{};
  std::snprintf(text.data(), text.size(), "%02d:%02d:%02d.%03u", local.tm_hour, local.tm_min, local.tm_sec,
                static_cast<unsigned>(time.millitm));
  return text.data();
}

}  // namespace

LogAppender& LogAppender::Instance() {
  static LogAppender appender;
  return appender;
}

void LogAppender::write(const plog::Record& record) {
  if (receiver_) receiver_(record);
}

std::string LogLine(const plog::Record& record, const std::string& message) {
  std::ostringstream line;
  line << TimeText(record.getTime()) << ' ' << plog::severityToString(record.getSeverity()) << " [" << record.getFunc()
       << ':' << record.getLine() << "] " << message;
  return line.str();
}

std::string MessageText(const plog::Record& record) {
  return Utf8(record.getMessage());
}

}  // namespace zt::telemetry::host
