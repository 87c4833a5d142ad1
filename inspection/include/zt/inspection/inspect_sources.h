#pragma once

#include <plog/Appenders/IAppender.h>
#include <plog/Severity.h>

#include <functional>

#include "zt/inspection/source_report.h"
#include "zt/zt_inspection_export.h"

namespace zt::telemetry::inspection {

using ReportReceiver = std::function<void(const SourceReport&)>;

/// The name under which a program that loads the library at run time finds `ztInspectSources`.
inline constexpr char kInspectSourcesName[] = "ztInspectSources";
using InspectSourcesFunction = void(plog::Severity log_level, plog::IAppender* log, const ReportReceiver& receive);

}  // namespace zt::telemetry::inspection

/// Asks every live source of the collector once, in the order of a collection, and tells `receive` of each as soon as
/// it has answered. Nothing is handed over, stored or deleted. What a source throws becomes its report; what `receive`
/// throws ends the inspection. Shares the collector's state of the process: no collection may run meanwhile.
///
/// `log` receives what the sources log down to `log_level`, before their reports. The collector keeps both for as long
/// as it is loaded, and those of the first call for good (see `ztSharedInitializeLogger`).
extern "C" ZT_INSPECTION_EXPORT void ztInspectSources(plog::Severity log_level, plog::IAppender* log,
                                                      const zt::telemetry::inspection::ReportReceiver& receive);
