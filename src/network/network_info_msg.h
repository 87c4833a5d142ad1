#pragma once

#include <map>
#include <string>
#include <vector>

#include "messages/perf_messages.h"
#include "types/network_interface_info.h"
#include "types/tcp_stats.h"

namespace zt::telemetry::collector::performancesamples {

/// The network interfaces of this machine as they are now, for those who ask: a collection does not, since the hourly
/// network records of stored samples fill the record's network section.
class ZT_COLLECTOR_EXPORT NetworkInfoMsg : public PerfMessages {
 public:
  using SampleRows = std::vector<std::map<std::string, std::string>>;

  /// Both outlive the object. Without a client (null) every query counts as failed. The rows are kept and not read.
  NetworkInfoMsg(shared::wmi::WMIClient* wmi_client, SampleRows* rows);
  NetworkInfoMsg(const NetworkInfoMsg&);
  NetworkInfoMsg& operator=(const NetworkInfoMsg&);
  ~NetworkInfoMsg() override;

  /// Adds nothing to a live record.
  void PopulateStorageAndUploadProtos() override;

  /// The inventory: every interface that the performance counters list, with what WMI knows of its adapter. A query
  /// that fails counts as one without rows, a property that cannot be read leaves its field as it was.
  types::NetworkInterfaces PerformNetworkInterfaceQueries();

  /// Adds to the interfaces what the system's network list and its interface table know, and keeps whether any of them
  /// has network or internet access, and whether a VPN is up. Throws `Error` (kind 5, the HRESULT as code, the system's
  /// text for it as message) when the network list cannot be had; without COM one line is logged. A question that the
  /// list or the table does not answer leaves its field as it was.
  void HandleGeneralConnInfo(types::NetworkInterfaces& interfaces);

  /// Adds to the interfaces that are Wi-Fi ones their link, channel, interference counts and profiles. Throws nothing:
  /// a failure of the WLAN service ends the pass with one line in the log.
  void HandleWlanInfo(types::NetworkInterfaces& interfaces);

  bool is_vpn_connected_ = false;     ///< A connected network runs over a virtual adapter that is not in the inventory.
  bool has_network_access_ = false;   ///< An interface of the inventory is connected.
  bool has_internet_access_ = false;  ///< A network of a connected interface reaches the internet.

 private:
  // Runs what is private here one by one, for those who show a machine's network.
  friend class NetworkInspection;

  types::Ipv4Stats GetTcpIPv4Statistics();
  types::Ipv6Stats GetTcpIPv6Statistics();
  bool IsVpnConnected(const std::wstring& guid);
  void CalculateChannelInterference(types::NetworkInterfaceInfo& info);

  SampleRows* rows_ = nullptr;
};

}  // namespace zt::telemetry::collector::performancesamples
