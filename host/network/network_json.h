#pragma once

#include <string>

#include "host/inspection/network_report.h"

namespace zt::telemetry::host {

/// A machine's network as one JSON object on one line: every field of an interface by its name in the collector's
/// record and in its order. Bytes that are no UTF-8 become U+FFFD.
std::string NetworkJson(const inspection::NetworkReport& report);

}  // namespace zt::telemetry::host
