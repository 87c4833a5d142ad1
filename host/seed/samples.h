#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace zt::telemetry::host {

/// Temperatures in whole degrees Celsius, fan speeds in revolutions a minute, speed steps in percent.
struct ThermalSample {
  std::chrono::sys_seconds time;
  std::int64_t cpu_temp = 0;
  std::int64_t ext_sensor_temp = 0;
  std::int64_t loc_sensor_temp = 0;
  std::int64_t fan1_current_tach_speed = 0;
  std::int64_t fan1_target_tach_speed = 0;
  std::int64_t fan1_speed_step = 0;
  std::int64_t fan2_current_tach_speed = 0;
  std::int64_t fan2_target_tach_speed = 0;
  std::int64_t fan2_speed_step = 0;
};

using Blob = std::vector<std::uint8_t>;

/// One interface at one time. Speeds in Mbit/s, signal strength in dBm, bytes of the minute. An interface without a
/// radio has 0 and empty texts where one with a radio has its figures.
struct NetworkSample {
  std::chrono::sys_seconds time;
  std::string interface_device_id;
  std::string network_trust_level;
  std::int64_t is_managed = 0;
  std::int64_t channel = 0;
  std::string radio_type;
  double nominal_speed = 0;
  double tx_rate = 0;
  double rx_rate = 0;
  std::int64_t signal_strength = 0;
  std::int64_t bytes_received = 0;
  std::int64_t bytes_sent = 0;
  std::int64_t co_channel_interference_count = 0;
  std::int64_t adjacent_channel_interference_count = 0;
  std::int64_t is_vpn_connected = 0;
  std::int64_t has_network_access = 0;
  std::int64_t has_internet_access = 0;
  std::int64_t tcp_ipv4_current_connections = 0;
  std::int64_t tcp_ipv4_failed_connections = 0;
  std::int64_t tcp_ipv4_errors_received = 0;
  std::int64_t tcp_ipv6_failed_connections = 0;
  Blob profile_name_hash;
  std::string profile_authentication;
  std::string profile_encryption;
};

}  // namespace zt::telemetry::host
