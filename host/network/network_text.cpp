#include "host/network/network_text.h"

#include <array>
#include <utility>
#include <vector>

#include "host/network/interfaces_by_name.h"
#include "host/views/figures.h"
#include "host/views/text_table.h"

namespace zt::telemetry::host {
namespace {

using inspection::NetworkReport;
using inspection::types::NetworkInterfaceInfo;
using Rows = std::vector<std::vector<Cell>>;

constexpr std::size_t kIndent = 2;
const std::vector<std::string> kNoHeadings = {"", ""};
// A disconnected adapter tells the largest signed number, or none.
constexpr float kNoSpeed = 9e18F;

std::string YesNo(bool flag) {
  return flag ? "yes" : "no";
}

Cell Text(const std::string& text) {
  return {text.empty() ? "-" : Printable(text), false};
}

Cell FigureCell(std::string text) {
  return {std::move(text), true};
}

// Bits for each second, in the largest unit that fits.
std::string SpeedText(double bits) {
  constexpr std::array<std::pair<double, const char*>, 3> kUnits = {
      {{1e9, " Gbit/s"}, {1e6, " Mbit/s"}, {1e3, " kbit/s"}}};
  for (const auto& [size, unit] : kUnits) {
    if (bits >= size) return NumberText(bits / size) + unit;
  }
  return NumberText(bits) + " bit/s";
}

std::string NominalSpeedText(float bits) {
  return bits <= 0 || bits >= kNoSpeed ? "-" : SpeedText(static_cast<double>(bits));
}

std::string RateText(float kilobits) {
  constexpr double kBitsOfAKilobit = 1000;
  return SpeedText(static_cast<double>(kilobits) * kBitsOfAKilobit);
}

std::string ConnectionText(const NetworkReport& report) {
  return TableText(kNoHeadings,
                   {{Text("Network access"), Text(YesNo(report.has_network_access))},
                    {Text("Internet access"), Text(YesNo(report.has_internet_access))},
                    {Text("VPN"), Text(YesNo(report.is_vpn_connected))}},
                   kIndent, kTextWidth);
}

std::string InterfacesText(const InterfacesByName& interfaces) {
  if (interfaces.empty()) return "  none\n";
  Rows rows;
  for (const auto& [name, info] : interfaces) {
    rows.push_back({Text(name), Text(info.net_connection_id), Text(info.connection_status),
                    Text(YesNo(info.has_internet_access)), Text(info.network_category),
                    FigureCell(NominalSpeedText(info.nominal_speed)),
                    FigureCell(BytesText(static_cast<double>(info.bytes_received))),
                    FigureCell(BytesText(static_cast<double>(info.bytes_sent))), Text(YesNo(info.dhcp_enabled))});
  }
  return TableText({"interface", "connection", "status", "internet", "network", "speed", "received", "sent", "DHCP"},
                   rows, kIndent, kTextWidth);
}

bool IsWifi(const NetworkInterfaceInfo& info) {
  return info.channel != 0 || info.signal_strength != 0 || !info.w_lan_profiles.empty();
}

std::string LinkText(const NetworkInterfaceInfo& info) {
  return TableText(kNoHeadings,
                   {{Text("Radio"), Text(info.radio_type)},
                    {Text("Channel"), Text(NumberText(info.channel))},
                    {Text("Signal"), Text(NumberText(static_cast<double>(info.signal_strength)) + " %")},
                    {Text("Receive rate"), Text(RateText(info.receive_rate))},
                    {Text("Transmission rate"), Text(RateText(info.transmission_rate))},
                    {Text("Channels that coincide"), Text(NumberText(info.co_channel_interference_count))},
                    {Text("Channels that overlap"), Text(NumberText(info.adjacent_channel_interference_count))}},
                   kIndent, kTextWidth);
}

std::string ProfilesText(const NetworkInterfaceInfo& info) {
  if (info.w_lan_profiles.empty()) return {};
  Rows rows;
  for (const auto& profile : info.w_lan_profiles) {
    rows.push_back({Text(profile.profile_name), Text(profile.authentication), Text(profile.encryption),
                    Text(YesNo(profile.is_current))});
  }
  return "\n" + TableText({"profile", "authentication", "encryption", "in use"}, rows, kIndent, kTextWidth);
}

std::string WifiText(const InterfacesByName& interfaces) {
  std::string text;
  for (const auto& [name, info] : interfaces) {
    if (IsWifi(info)) text += "\nWI-FI: " + Printable(name) + "\n" + LinkText(info) + ProfilesText(info);
  }
  return text;
}

std::string TcpText(const NetworkReport& report) {
  return TableText(
      {"", "connections", "failed attempts", "segments in error"},
      {{Text("IPv4"), FigureCell(NumberText(report.tcp_ipv4.current_connections)),
        FigureCell(NumberText(report.tcp_ipv4.failed_connections)),
        FigureCell(NumberText(report.tcp_ipv4.errors_received))},
       {Text("IPv6"), FigureCell("-"), FigureCell(NumberText(report.tcp_ipv6.failed_connections)), FigureCell("-")}},
      kIndent, kTextWidth);
}

}  // namespace

std::string NetworkText(const NetworkReport& report) {
  const InterfacesByName interfaces = ByName(report.interfaces);
  return "CONNECTION\n" + ConnectionText(report) + "\nINTERFACES\n" + InterfacesText(interfaces) +
         WifiText(interfaces) + "\nTCP\n" + TcpText(report);
}

}  // namespace zt::telemetry::host
