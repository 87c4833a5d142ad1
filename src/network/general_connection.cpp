#include <plog/Log.h>
#include <zt/text/wide_text.h>

#include <string>

#include "network/connection_vocabulary.h"
#include "network/find_by_guid.h"
#include "network/network_info_msg.h"
#include "platform/com_apartment.h"
#include "platform/ip_helper.h"
#include "platform/network_list.h"
#include "platform/system_message.h"
#include "zt/telemetry/common/error.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using platform::ListedNetwork;
using platform::NetworkList;

constexpr char kConnectionsComFailure[] = "Failed to initialize COM.";
constexpr char kManagerFailure[] = "Failed to create NetworkListManager instance.";
constexpr char kListFailure[] = "Failed to retrieve network list.";
constexpr char kNoMessageStart[] = "The system cannot find message text for error code ";
constexpr char kNoMessageEnd[] = "\r\n";

// What an error of the network list comes from.
constexpr char kSource[] = "NetworkListManager";

constexpr char kConnected[] = "Connected";

[[noreturn]] void Throw(const char* description, std::int32_t status) {
  const std::string without_text = kNoMessageStart + std::to_string(status) + kNoMessageEnd;
  throw common::Error(common::Error::kCallFailed, status, description, kSource,
                      platform::SystemMessage(status).value_or(without_text));
}

NetworkList RequireNetworks() {
  NetworkList list = platform::ListNetworks();
  if (list.outcome == NetworkList::Outcome::kNoManager) Throw(kManagerFailure, list.status);
  if (list.outcome == NetworkList::Outcome::kNotListed) Throw(kListFailure, list.status);
  return list;
}

// Returns whether the network told that it reaches the internet.
bool ReadInternetAccess(const ListedNetwork& network, types::NetworkInterfaceInfo& info) {
  const std::optional<bool> reaches = network.IsConnectedToInternet();
  info.has_internet_access = reaches.value_or(info.has_internet_access);
  return reaches.value_or(false);
}

void ReadCategory(const ListedNetwork& network, types::NetworkInterfaceInfo& info) {
  const std::optional<std::int32_t> category = network.Category();
  if (!category) return;
  const auto known = kNetworkCategoryTexts.find(*category);
  if (known != kNetworkCategoryTexts.end()) info.network_category = known->second;
}

void ReadCounters(types::NetworkInterfaceInfo& info) {
  const std::optional<platform::InterfaceCounters> counters = platform::CountersOfInterface(info.interface_index);
  if (!counters) return;
  info.bytes_sent = counters->bytes_out;
  info.bytes_received = counters->bytes_in;
}

}  // namespace

void NetworkInfoMsg::HandleGeneralConnInfo(types::NetworkInterfaces& interfaces) {
  const platform::ComApartment com;  // outlives the networks
  if (com.Status() < 0) {
    PLOG_ERROR << kConnectionsComFailure << std::to_string(com.Status());
    return;
  }
  const NetworkList list = RequireNetworks();
  for (const ListedNetwork& network : list.networks) {
    for (const std::wstring& adapter : network.ConnectionAdapters()) {
      if (types::NetworkInterfaceInfo* const info = FindByGuid(interfaces, text::ToUtf8(adapter))) {
        info->is_connected = info->connection_status == kConnected;
        has_network_access_ |= info->is_connected;
        if (info->is_connected) has_internet_access_ |= ReadInternetAccess(network, *info);
        ReadCategory(network, *info);
        ReadCounters(*info);
      } else if (!is_vpn_connected_ && network.IsConnected().value_or(false)) {
        is_vpn_connected_ = IsVpnConnected(adapter);
      }
    }
  }
}

}  // namespace zt::telemetry::collector::performancesamples
