#include "zt/inspection/inspect_network.h"

#include <cstdint>

#include "failed_queries.h"
#include "failure_text.h"
#include "network/network_info_msg.h"
#include "network/network_inspection.h"
#include "platform/wlan_service.h"
#include "plugin/logger_export.h"

namespace zt::telemetry::inspection {
namespace {

namespace platform = collector::performancesamples::platform;
using collector::performancesamples::NetworkInfoMsg;
using collector::performancesamples::NetworkInspection;

constexpr wchar_t kWmiNamespace[] = LR"(\\.\root\cimv2)";
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
}  // namespace zt::telemetry::inspection

void ztInspectNetwork(plog::Severity log_level, plog::IAppender* log,
                      zt::telemetry::inspection::NetworkReport& report) {
  using namespace zt::telemetry::inspection;
  ztSharedInitializeLogger(log_level, log);
  const FailedQueries failed_queries(report.failures);
  zt::shared::wmi::WMIClient wmi(kWmiNamespace);
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
}
