#include "host/network/network_json.h"

#include <nlohmann/json.hpp>

#include "host/network/interfaces_by_name.h"

namespace zt::telemetry::host {
namespace {

using Json = nlohmann::ordered_json;

Json ProfileJson(const inspection::types::WLanProfile& profile) {
  return {{"profile_name", profile.profile_name},
          {"authentication", profile.authentication},
          {"encryption", profile.encryption},
          {"is_current", profile.is_current}};
}

Json ProfilesJson(const std::vector<inspection::types::WLanProfile>& profiles) {
  Json json = Json::array();
  for (const auto& profile : profiles) json.push_back(ProfileJson(profile));
  return json;
}

Json InterfaceJson(const inspection::types::NetworkInterfaceInfo& info) {
  return {{"pnp_device_id", info.pnp_device_id},
          {"bytes_sent", info.bytes_sent},
          {"bytes_received", info.bytes_received},
          {"transmission_rate", info.transmission_rate},
          {"receive_rate", info.receive_rate},
          {"nominal_speed", info.nominal_speed},
          {"reserved_flag", info.reserved_flag},
          {"has_internet_access", info.has_internet_access},
          {"is_connected", info.is_connected},
          {"net_connection_id", info.net_connection_id},
          {"connection_status", info.connection_status},
          {"mac_address", info.mac_address},
          {"network_category", info.network_category},
          {"manufacturer", info.manufacturer},
          {"reserved_text", info.reserved_text},
          {"reserved_number", info.reserved_number},
          {"is_physical_adapter", info.is_physical_adapter},
          {"adapter_type", info.adapter_type},
          {"dhcp_enabled", info.dhcp_enabled},
          {"channel", info.channel},
          {"radio_type", info.radio_type},
          {"signal_strength", info.signal_strength},
          {"co_channel_interference_count", info.co_channel_interference_count},
          {"adjacent_channel_interference_count", info.adjacent_channel_interference_count},
          {"w_lan_profiles", ProfilesJson(info.w_lan_profiles)},
          {"guid", info.guid},
          {"interface_index", info.interface_index}};
}

}  // namespace

std::string NetworkJson(const inspection::NetworkReport& report) {
  Json interfaces = Json::object();
  for (const auto& [name, info] : ByName(report.interfaces)) interfaces[name] = InterfaceJson(info);
  const Json json = {{"interfaces", interfaces},
                     {"is_vpn_connected", report.is_vpn_connected},
                     {"has_network_access", report.has_network_access},
                     {"has_internet_access", report.has_internet_access},
                     {"tcp_ipv4",
                      {{"current_connections", report.tcp_ipv4.current_connections},
                       {"failed_connections", report.tcp_ipv4.failed_connections},
                       {"errors_received", report.tcp_ipv4.errors_received}}},
                     {"tcp_ipv6", {{"failed_connections", report.tcp_ipv6.failed_connections}}}};
  return json.dump(-1, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace);
}

}  // namespace zt::telemetry::host
