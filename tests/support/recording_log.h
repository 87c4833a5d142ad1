#pragma once

#include <plog/Appenders/IAppender.h>
#include <plog/Record.h>

#include <algorithm>
#include <string>
#include <vector>

#include "zt/text/wide_text.h"

namespace zt::tests {

/// A host's log that keeps what reaches it.
class RecordingLog : public plog::IAppender {
 public:
  struct Line {
    plog::Severity severity;
    std::string function;
    std::string file;
    std::string message;
    std::wstring object;
    std::size_t line;
    int instance;
  };

  void write(const plog::Record& record) override {
    const auto* object = static_cast<const wchar_t*>(record.getObject());
    lines.push_back({record.getSeverity(), record.getFunc(), record.getFile(), Utf8(record.getMessage()),
                     object != nullptr ? object : L"", record.getLine(), record.getInstanceId()});
  }

  std::vector<std::string> Messages() const {
    std::vector<std::string> messages;
    for (const Line& line : lines) messages.push_back(line.message);
    return messages;
  }

  std::vector<std::string> Messages(plog::Severity severity) const {
    std::vector<std::string> messages;
    for (const Line& line : lines) {
      if (line.severity == severity) messages.push_back(line.message);
    }
    return messages;
  }

  std::vector<Line> lines;

 private:
  // Messages are wide texts where the build is for such a host.
  static std::string Utf8(const char* text) { return text; }
  static std::string Utf8(const wchar_t* text) { return text::ToUtf8(text); }
};

}  // namespace zt::tests
