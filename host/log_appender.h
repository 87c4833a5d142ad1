#pragma once

#include <plog/Appenders/IAppender.h>

#include <functional>
#include <string>
#include <utility>

namespace zt::telemetry::host {

/// Receives the plugin's log lines. The plugin keeps the appender of its first set-up for as long as it is loaded, so
/// there is one for the life of the process, and commands choose where it writes.
class LogAppender : public plog::IAppender {
 public:
  static LogAppender& Instance();

  void write(const plog::Record& record) override;

  using Receiver = std::function<void(const plog::Record& record)>;

  /// As long as it lives, log records go to `receiver`; otherwise they are dropped.
  class Target {
   public:
    explicit Target(Receiver receiver) { Instance().receiver_ = std::move(receiver); }
    ~Target() { Instance().receiver_ = nullptr; }
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;
  };

 private:
  LogAppender() = default;

  Receiver receiver_;
};

/// A log record as one line, UTF-8: time, severity, operation, and `message` as its message.
std::string LogLine(const plog::Record& record, const std::string& message);

/// The message of a log record, UTF-8.
std::string MessageText(const plog::Record& record);

}  // namespace zt::telemetry::host
