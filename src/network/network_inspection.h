#pragma once

#include <string>

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

  /// Whether the adapter with this GUID ("{...}") calls itself a VPN or a virtual one.
  bool IsVpn(const std::wstring& guid) { return network_.IsVpnConnected(guid); }

  /// Adds to the interference counts of `info` what its channel shares with the channels of the plan, or of `table`.
  void CountInterference(types::NetworkInterfaceInfo& info) { network_.CalculateChannelInterference(info); }
  void CountInterference(types::NetworkInterfaceInfo& info, const FrequencyTable& table) {
    network_.CalculateChannelInterference(info, table);
  }

 private:
  NetworkInfoMsg& network_;
};

}  // namespace zt::telemetry::collector::performancesamples
