#include <plog/Log.h>

#include "network/frequency_data.h"
#include "network/network_info_msg.h"

namespace zt::telemetry::collector::performancesamples {

void NetworkInfoMsg::CalculateChannelInterference(types::NetworkInterfaceInfo& info) {
  const Interference interference = CountInterference(frequencyData, info.channel);
  if (!interference.remark.empty()) {
    PLOG(interference.severity) << interference.remark;
  }
  info.co_channel_interference_count += interference.co_channel;
  info.adjacent_channel_interference_count += interference.adjacent;
}

}  // namespace zt::telemetry::collector::performancesamples
