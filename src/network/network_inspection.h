#pragma once

#include "network/network_info_msg.h"

namespace zt::telemetry::collector::performancesamples {

/// What the log tells where the system's WLAN service cannot be opened, and where a profile does not show its settings
/// (in front of its name). Whether that is a failure depends on the machine.
inline constexpr char kWlanOpenFailure[] = "Failed to open handle to WLAN interface";
inline constexpr char kWlanProfileFailure[] = "Failed to retrieve WLAN profile for ";

/// Runs the parts of `NetworkInfoMsg` that nothing outside it calls, for those who show a machine's network. Holds the
/// object for as long as it lives itself.
class NetworkInspection {
 public:
  explicit NetworkInspection(NetworkInfoMsg& network) : network_(network) {}

  /// Of IPv4; all zero, with one line in the log, where the system does not tell.
  types::Ipv4Stats TcpIPv4() { return network_.GetTcpIPv4Statistics(); }
  /// Of IPv6, likewise.
  types::Ipv6Stats TcpIPv6() { return network_.GetTcpIPv6Statistics(); }

 private:
  NetworkInfoMsg& network_;
};

}  // namespace zt::telemetry::collector::performancesamples
