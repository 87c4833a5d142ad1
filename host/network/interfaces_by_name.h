#pragma once

#include <map>
#include <string>

#include "host/inspection/network_report.h"

namespace zt::telemetry::host {

/// Interfaces in the order of their names: that of the report is any.
using InterfacesByName = std::map<std::string, inspection::types::NetworkInterfaceInfo>;

inline InterfacesByName ByName(const inspection::types::NetworkInterfaces& interfaces) {
  return {interfaces.begin(), interfaces.end()};
}

}  // namespace zt::telemetry::host
