#pragma once

#include <plog/Appenders/IAppender.h>
#include <plog/Severity.h>

#include "zt/zt_collector_export.h"

/// Connects the plugin's log to the host's. The first call decides the highest severity that is logged and the
/// appender, which must outlive the plugin and must not be null; every further call only makes each record reach that
/// appender once more. Until the first call nothing is logged; a call for which there is no memory changes nothing. Not
/// for two threads at once.
///
/// A host's appender reads plog's own record type, whose messages are wide texts or UTF-8 by PLOG_CHAR_IS_UTF8. The
/// collector is built for one of them, by the CMake option ZT_PLOG_CHAR_IS_UTF8: without it as plog has it where nobody
/// chooses, wide on Windows. A host that was built for the other cannot read the records.
extern "C" ZT_COLLECTOR_EXPORT void ztSharedInitializeLogger(plog::Severity max_severity,
                                                             plog::IAppender* host_appender);
