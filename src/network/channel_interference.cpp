#include <plog/Log.h>

#include "network/network_info_msg.h"

namespace zt::telemetry::collector::performancesamples {

void NetworkInfoMsg::CalculateChannelInterference(types::NetworkInterfaceInfo& info) {
  CalculateChannelInterference(info, frequencyData);
}

void NetworkInfoMsg::CalculateChannelInterference(types::NetworkInterfaceInfo& info, const FrequencyTable& table) {
  const auto own = table.find(info.channel);
  if (own == table.end()) {
    PLOG_INFO << "connectedChannel " << std::to_string(info.channel) << " not found in frequencyData.";
    return;
  }
  const std::optional<FrequencyRange> range = ParseFrequencyRange(own->second);
  if (!range) {
    PLOG_ERROR << "Error: Invalid frequency range format for connectedChannel " << std::to_string(info.channel);
    return;
  }
  const InterferenceCounts counts = CountInterference(table, info.channel, *range);
  info.co_channel_interference_count += counts.co_channel;
  info.adjacent_channel_interference_count += counts.adjacent;
}

}  // namespace zt::telemetry::collector::performancesamples
