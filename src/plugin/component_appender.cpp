#include "plugin/component_appender.h"

#include <new>
#include <utility>

namespace zt::shared::common::logger {

ComponentAppender::ComponentAppender(std::wstring component, plog::IAppender* host_appender)
    : component_(std::move(component)), host_appender_(host_appender) {}

void ComponentAppender::write(const plog::Record& record) {
  try {
    const char* const function = record.getFunc();
    plog::Record forwarded(record.getSeverity(), function, record.getLine(), function, component_.c_str(),
                           record.getInstanceId());
    forwarded << record.getMessage();
    host_appender_->write(forwarded);
  } catch (const std::bad_alloc&) {
    // A line that there is no memory for is dropped: what it tells of goes on.
  }
}

}  // namespace zt::shared::common::logger
