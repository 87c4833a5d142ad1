#pragma once

#include <plog/Appenders/IAppender.h>
#include <plog/Severity.h>

#include <string>

#include "host/inspection/network_report.h"

namespace zt::telemetry::host::inspection {

/// Lets the collector look at the machine's network: the inventory, then the general connections, Wi-Fi and TCP.
///
/// The collector that looks is a part of this program. `log` receives what it logs down to `log_level`; several of its
/// passes tell of a failure there alone, as an error. Both are kept for as long as the process lives, and those of the
/// first call for good (see `ztSharedInitializeLogger`).
NetworkReport InspectNetwork(plog::Severity log_level, plog::IAppender& log);

/// Whether an error that was logged in an inspection tells of a failure. None are: a profile that does not show its
/// settings, and that there is nothing to open where the system has no WLAN service.
bool TellsOfFailure(const std::string& error, const NetworkReport& report);

}  // namespace zt::telemetry::host::inspection
