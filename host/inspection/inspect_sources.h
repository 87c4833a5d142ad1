#pragma once

#include <plog/Appenders/IAppender.h>
#include <plog/Severity.h>

#include <functional>

#include "collector/sources.h"
#include "host/inspection/source_report.h"

namespace zt::telemetry::host::inspection {

using ReportReceiver = std::function<void(const SourceReport&)>;

/// Asks every live source of the collector once, in the order of a collection, and tells `receive` of each as soon as
/// it has answered. Nothing is handed over, stored or deleted. What a source throws becomes its report; what `receive`
/// throws ends the inspection.
///
/// The collector that is asked is a part of this program; a plugin that it loads has a state of its own. `log` receives
/// what the sources log down to `log_level`, before their reports; both are kept for as long as the process lives, and
/// those of the first call for good (see `ztSharedInitializeLogger`).
void InspectSources(plog::Severity log_level, plog::IAppender& log, const ReportReceiver& receive);

/// Asks one source as `InspectSources` does, with what is asked for itself before it (see `Diagnosis`). The collector's
/// records must have been made (`PerfMessages::Init`).
void InspectSource(const collector::performancesamples::Source& source, collector::performancesamples::Clients& clients,
                   const ReportReceiver& receive);

}  // namespace zt::telemetry::host::inspection
