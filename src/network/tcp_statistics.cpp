#include <plog/Log.h>

#include "network/network_info_msg.h"
#include "platform/ip_helper.h"

namespace zt::telemetry::collector::performancesamples {

types::Ipv4Stats NetworkInfoMsg::GetTcpIPv4Statistics() {
  const std::optional<platform::TcpCounters> counters = platform::TcpV4Counters();
  if (!counters) {
    PLOG_ERROR << "IPV4 statistics not found";
    return {};
  }
  return {counters->established, counters->failed_attempts, counters->errors_in};
}

types::Ipv6Stats NetworkInfoMsg::GetTcpIPv6Statistics() {
  const std::optional<platform::TcpCounters> counters = platform::TcpV6Counters();
  if (!counters) {
    PLOG_ERROR << "IPV6 statistics not found";
    return {};
  }
  return {counters->failed_attempts};
}

}  // namespace zt::telemetry::collector::performancesamples
