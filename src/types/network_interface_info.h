#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <unordered_map>
#include <vector>

namespace zt::telemetry::collector::performancesamples::types {

/// A Wi-Fi network that an interface has settings for. Texts are UTF-8.
struct WLanProfile {
  std::string profile_name;
  std::string authentication;  // as the profile's XML has it, "WPA2PSK"; empty when it was not read
  std::string encryption;      // as the profile's XML has it, "AES"; empty when it was not read
  bool is_current = false;     // the interface is connected with it

  bool operator==(const WLanProfile&) const = default;
};

/// What is known of a network interface. Texts are UTF-8.
struct NetworkInterfaceInfo {
  /// The index of an interface that none is known of.
  static constexpr std::uint32_t kNoIndex = std::numeric_limits<std::uint32_t>::max();

  std::string pnp_device_id;
  std::uint64_t bytes_sent = 0;      // low 32 bits of what was sent since the interface started
  std::uint64_t bytes_received = 0;  // likewise
  float transmission_rate = 0;       // Wi-Fi, kbit/s
  float receive_rate = 0;            // Wi-Fi, kbit/s
  float nominal_speed = 0;           // bit/s
  bool reserved_flag = false;        // holds a place; nothing sets it
  bool has_internet_access = false;
  bool is_connected = false;
  std::string net_connection_id;  // the name that people see, "Wi-Fi 2"
  std::string connection_status = "Unknown";
  std::string mac_address;
  std::string network_category = "Unknown";
  std::string manufacturer;
  std::string reserved_text;          // holds a place; nothing sets it
  std::uint32_t reserved_number = 0;  // holds a place; nothing sets it
  bool is_physical_adapter = false;
  std::string adapter_type;  // "Ethernet 802.3"
  bool dhcp_enabled = false;
  std::uint32_t channel = 0;  // Wi-Fi; 0 until it is known
  std::string radio_type = "Unknown";
  float signal_strength = 0;                              // Wi-Fi, %
  std::uint32_t co_channel_interference_count = 0;        // channels of the plan that coincide
  std::uint32_t adjacent_channel_interference_count = 0;  // channels of the plan that overlap
  std::vector<WLanProfile> w_lan_profiles;
  std::string guid;  // of the adapter, in braces
  std::uint32_t interface_index = kNoIndex;

  bool operator==(const NetworkInterfaceInfo&) const = default;
};

/// Interfaces by their name: that of the performance counters with parentheses in the place of square brackets, which
/// is the product name of the adapter.
using NetworkInterfaces = std::unordered_map<std::string, NetworkInterfaceInfo>;

}  // namespace zt::telemetry::collector::performancesamples::types
