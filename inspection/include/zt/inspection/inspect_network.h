#pragma once

#include <plog/Appenders/IAppender.h>
#include <plog/Severity.h>

#include "zt/inspection/network_report.h"
#include "zt/zt_inspection_export.h"

namespace zt::telemetry::inspection {

/// The name under which a program that loads the library at run time finds `ztInspectNetwork`.
inline constexpr char kInspectNetworkName[] = "ztInspectNetwork";
using InspectNetworkFunction = void(plog::Severity log_level, plog::IAppender* log, NetworkReport& report);

}  // namespace zt::telemetry::inspection

/// Lets the collector look at the machine's network: the inventory, then the general connections, Wi-Fi and TCP. Fills
/// `report`, which is new.
///
/// `log` receives what the collector logs down to `log_level`; several of its passes tell of a failure there alone, as
/// an error. The collector keeps both for as long as it is loaded, and those of the first call for good (see
/// `ztSharedInitializeLogger`).
extern "C" ZT_INSPECTION_EXPORT void ztInspectNetwork(plog::Severity log_level, plog::IAppender* log,
                                                      zt::telemetry::inspection::NetworkReport& report);
