#include "host/inspection/inspect_network.h"

#include <cstdint>

#include "host/inspection/failed_queries.h"
#include "host/inspection/failure_text.h"
#include "network/network_info_msg.h"
#include "network/network_inspection.h"
#include "platform/wlan_service.h"
#include "plugin/logger_export.h"

namespace zt::telemetry::host::inspection {
namespace {

namespace samples = collector::performancesamples;
namespace platform = samples::platform;
using samples::NetworkInfoMsg;
using samples::NetworkInspection;

// The service is there and does not run: Windows starts it where there is Wi-Fi.
constexpr std::uint32_t kServiceNotActive = 1062;

template <typename Part>
void RunSafely(const Part& part, NetworkReport& report) {
  try {
    part();
  } catch (...) {
    report.failures.push_back(CurrentFailureText());
  }
}

bool HasWlanService() {
  const platform::WlanOpening opening = platform::WlanService::Open();
  return opening.service || (opening.status != 0 && opening.status != kServiceNotActive);
}

}  // namespace

NetworkReport InspectNetwork(plog::Severity log_level, plog::IAppender& log) {
  ztSharedInitializeLogger(log_level, &log);
  NetworkReport report;
  const FailedQueries failed_queries(report.failures);
  shared::wmi::WMIClient wmi(shared::wmi::kSystemNamespace);
  NetworkInfoMsg::SampleRows rows;
  NetworkInfoMsg network(&wmi, &rows);
  NetworkInspection inspection(network);
  RunSafely([&] { report.interfaces = network.PerformNetworkInterfaceQueries(); }, report);
  RunSafely([&] { network.HandleGeneralConnInfo(report.interfaces); }, report);
  RunSafely([&] { network.HandleWlanInfo(report.interfaces); }, report);
  RunSafely([&] { report.tcp_ipv4 = inspection.TcpIPv4(); }, report);
  RunSafely([&] { report.tcp_ipv6 = inspection.TcpIPv6(); }, report);
  report.has_wlan_service = HasWlanService();
  report.is_vpn_connected = network.is_vpn_connected_;
  report.has_network_access = network.has_network_access_;
  report.has_internet_access = network.has_internet_access_;
  return report;
}

bool TellsOfFailure(const std::string& error, const NetworkReport& report) {
  if (error.starts_with(samples::kWlanProfileFailure)) return false;
  return report.has_wlan_service || !error.ends_with(samples::kWlanOpenFailure);
}

}  // namespace zt::telemetry::host::inspection
