#include "collector/logged_failure.h"

#include <plog/Log.h>

#include "messages/log_text.h"
#include "zt/telemetry/common/error.h"

namespace zt::telemetry::collector::performancesamples {

void LogFailure(const char* function) noexcept {
  try {
    IF_PLOG(plog::error) {
      plog::Record record(plog::error, function, __LINE__, PLOG_GET_FILE(), nullptr, PLOG_DEFAULT_INSTANCE_ID);
      record << "Error handling message. Details: " << LogText(common::Error::FromCurrentException().description);
      *plog::get() += record;
    }
  } catch (...) {
    // There is nobody left to tell.
    // coverage: a text can only be wanting where those of the log are wide
  }
}

}  // namespace zt::telemetry::collector::performancesamples
