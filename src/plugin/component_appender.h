#pragma once

#include <plog/Appenders/IAppender.h>
#include <plog/Record.h>

#include <string>

namespace zt::shared::common::logger {

/// Hands every log record of one module on to the host's appender, tagged with the module's name.
class ComponentAppender : public plog::IAppender {
 public:
  /// `host_appender` stays the host's and must not be null.
  ComponentAppender(std::wstring component, plog::IAppender* host_appender);

  /// The host gets a record of its own: the function name stands in the file field too, the object is the component's
  /// name (a zero-terminated wide text whatever messages are), a missing message reads "(null)". A record that there is
  /// no memory for is dropped.
  void write(const plog::Record& record) override;

 private:
  std::wstring component_;
  plog::IAppender* host_appender_;
};

}  // namespace zt::shared::common::logger
