#include "platform/ip_helper.h"

#include "platform/windows/ip_helper_figures.h"

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

constexpr ULONG kIpv6 = 23;  // AF_INET6, of a header whose order among others is delicate

}  // namespace

std::optional<InterfaceCounters> CountersOfInterface(std::uint32_t index) {
  MIB_IFROW row{};
  row.dwIndex = index;
  if (::GetIfEntry(&row) != NO_ERROR) return std::nullopt;
  return CountersOf(row);
}

std::optional<TcpCounters> TcpV4Counters() {
  MIB_TCPSTATS statistics{};
  if (::GetTcpStatistics(&statistics) != NO_ERROR) return std::nullopt;
  return CountersOf(statistics);
}

std::optional<TcpCounters> TcpV6Counters() {
  MIB_TCPSTATS statistics{};
  if (::GetTcpStatisticsEx(&statistics, kIpv6) != NO_ERROR) return std::nullopt;
  return CountersOf(statistics);
}

}  // namespace zt::telemetry::collector::performancesamples::platform
