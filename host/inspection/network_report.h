#pragma once

#include <string>
#include <vector>

#include "types/network_interface_info.h"
#include "types/tcp_stats.h"

namespace zt::telemetry::host::inspection {

namespace types = collector::performancesamples::types;

/// The network of a machine as it is now.
struct NetworkReport {
  types::NetworkInterfaces interfaces;
  bool is_vpn_connected = false;
  bool has_network_access = false;
  bool has_internet_access = false;
  types::Ipv4Stats tcp_ipv4;
  types::Ipv6Stats tcp_ipv6;
  /// Whether the system has a WLAN service that runs: without one the Wi-Fi pass has nothing to open.
  bool has_wlan_service = false;
  /// One line, UTF-8, for each pass that threw and for each table of WMI that could not be queried; what a pass had
  /// found before stays. What a pass only logs is not among them.
  std::vector<std::string> failures;
};

}  // namespace zt::telemetry::host::inspection
