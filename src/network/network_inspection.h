#pragma once

#include "network/network_info_msg.h"

namespace zt::telemetry::collector::performancesamples {

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
