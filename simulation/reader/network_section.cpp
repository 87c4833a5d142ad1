#include <charconv>
#include <system_error>

#include "simulation/reader/sections.h"

namespace zt::simulation::reader {
namespace {

std::uint32_t ReadInterfaceIndex(const Value& value, const std::string& key) {
  std::uint32_t index = 0;
  const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), index);
  if (error != std::errc{} || end != key.data() + key.size()) {
    value.Fail("expected an interface index from 0 to 4294967295 as the key");
  }
  return index;
}

}  // namespace

void Read(const Value& value, NetworkConnection& connection) {
  ReadObject(value, {{"adapter", To(connection.adapter)}});
}

void Read(const Value& value, ListedNetwork& network) {
  ReadObject(value, {{"category", To(network.category)},
                     {"connected", To(network.connected)},
                     {"internet", To(network.internet)},
                     {"connections", To(network.connections)}});
}

void Read(const Value& value, NetworkManager& manager) {
  ReadObject(value, {{"create", ToStatus(manager.create)},
                     {"get_networks", ToStatus(manager.get_networks)},
                     {"networks", To(manager.networks)}});
}

void Read(const Value& value, WlanProfile& profile) {
  ReadObject(value, {{"name", To(profile.name)}, {"flags", To(profile.flags)}, {"xml", To(profile.xml)}});
}

void Read(const Value& value, WlanInterface& interface) {
  ReadObject(value, {{"guid", To(interface.guid)},
                     {"state", To(interface.state)},
                     {"connection", ToStatus(interface.connection)},
                     {"profile", To(interface.profile)},
                     {"phy_type", To(interface.phy_type)},
                     {"signal_quality", To(interface.signal_quality)},
                     {"rx_rate_kbps", To(interface.rx_rate_kbps)},
                     {"tx_rate_kbps", To(interface.tx_rate_kbps)},
                     {"channel", To(interface.channel)},
                     {"profile_list", ToStatus(interface.profile_list)},
                     {"profiles", To(interface.profiles)}});
}

void Read(const Value& value, Wlan& wlan) {
  ReadObject(
      value,
      {{"open", ToStatus(wlan.open)}, {"enumerate", ToStatus(wlan.enumerate)}, {"interfaces", To(wlan.interfaces)}});
}

void Read(const Value& value, InterfaceCounters& counters) {
  ReadObject(value, {{"in_octets", To(counters.in_octets)}, {"out_octets", To(counters.out_octets)}});
}

void Read(const Value& value, std::map<std::uint32_t, Answer<InterfaceCounters>>& counters) {
  for (const auto& [key, member] : value.Members()) Read(member, counters[ReadInterfaceIndex(member, key)]);
}

void Read(const Value& value, TcpCounters& counters) {
  ReadObject(value, {{"established", To(counters.established)},
                     {"attempt_fails", To(counters.attempt_fails)},
                     {"errors_in", To(counters.errors_in)}});
}

void Read(const Value& value, Network& network) {
  ReadObject(value, {{"com", To(network.com)},
                     {"manager", To(network.manager)},
                     {"wlan", To(network.wlan)},
                     {"interface_counters", To(network.interface_counters)},
                     {"tcp_v4", To(network.tcp_v4)},
                     {"tcp_v6", To(network.tcp_v6)}});
}

}  // namespace zt::simulation::reader
