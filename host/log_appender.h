#pragma once

#include <plog/Appenders/IAppender.h>

#include <ostream>

namespace zt::telemetry::host {

/// Receives the plugin's log lines. The plugin keeps the appender of its first set-up for as long as it is loaded, so
/// there is one for the life of the process, and commands choose where it writes.
class LogAppender : public plog::IAppender {
 public:
  static LogAppender& Instance();

  void write(const plog::Record& record) override;

  /// As long as it lives, log lines go to `stream`; otherwise they are dropped.
  class Target {
   public:
    explicit Target(std::ostream& stream) { Instance().stream_ = &stream; }
    ~Target() { Instance().stream_ = nullptr; }
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;
  };

 private:
  LogAppender() = default;

  std::ostream* stream_ = nullptr;
};

}  // namespace zt::telemetry::host
