#pragma once

#include <string>

#include "host/inspection/network_report.h"

namespace zt::telemetry::host {

/// A machine's network for people: whether it is connected, its interfaces as a table, the Wi-Fi links with their
/// profiles, and the TCP counters.
std::string NetworkText(const inspection::NetworkReport& report);

}  // namespace zt::telemetry::host
