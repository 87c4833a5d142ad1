#include "plugin/logger_export.h"

#include <plog/Logger.h>

#include <new>
#include <string>

#include "platform/module_name.h"
#include "plugin/component_appender.h"

namespace platform = zt::telemetry::collector::performancesamples::platform;

void ztSharedInitializeLogger(plog::Severity max_severity, plog::IAppender* host_appender) {
  try {
    static const std::wstring module_name =
        platform::ModuleFileName(reinterpret_cast<const void*>(&ztSharedInitializeLogger));
    static zt::shared::common::logger::ComponentAppender appender(module_name, host_appender);
    static plog::Logger<PLOG_DEFAULT_INSTANCE_ID> logger(max_severity);
    logger.addAppender(&appender);
  } catch (const std::bad_alloc&) {
    // A function with a plain name has no way to tell: without memory the log stays as it was.
  }
}
