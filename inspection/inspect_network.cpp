#include "zt/inspection/inspect_network.h"

#include "failure_text.h"
#include "network/network_info_msg.h"
#include "network/network_inspection.h"
#include "plugin/logger_export.h"

namespace zt::telemetry::inspection {
namespace {

using collector::performancesamples::NetworkInfoMsg;
using collector::performancesamples::NetworkInspection;

constexpr wchar_t kWmiNamespace[] = LR"(\\.\root\cimv2)";

template <typename Part>
void RunSafely(const Part& part, NetworkReport& report) {
  try {
    part();
  } catch (...) {
    report.failures.push_back(CurrentFailureText());
  }
}

}  // namespace
}  // namespace zt::telemetry::inspection

void ztInspectNetwork(plog::IAppender* log, zt::telemetry::inspection::NetworkReport& report) {
  using namespace zt::telemetry::inspection;
  ztSharedInitializeLogger(plog::warning, log);
  zt::shared::wmi::WMIClient wmi(kWmiNamespace);
  NetworkInfoMsg::SampleRows rows;
  NetworkInfoMsg network(&wmi, &rows);
  NetworkInspection inspection(network);
  RunSafely([&] { report.interfaces = network.PerformNetworkInterfaceQueries(); }, report);
  RunSafely([&] { network.HandleGeneralConnInfo(report.interfaces); }, report);
  RunSafely([&] { network.HandleWlanInfo(report.interfaces); }, report);
  RunSafely([&] { report.tcp_ipv4 = inspection.TcpIPv4(); }, report);
  RunSafely([&] { report.tcp_ipv6 = inspection.TcpIPv6(); }, report);
  report.is_vpn_connected = network.is_vpn_connected_;
  report.has_network_access = network.has_network_access_;
  report.has_internet_access = network.has_internet_access_;
}
