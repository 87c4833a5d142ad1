#include "fleet/simulate/hourly_records.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "fleet/simulate/record_texts.h"
#include "host/seed/day_pattern.h"

namespace zt::telemetry::fleet {
namespace {

namespace chrono = std::chrono;
using host::NetworkSample;
using host::ThermalSample;
using Upload = contract::upload::log::PcLogPerformanceSamplesAsCDM;
using Hardware = contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo;
using Network = contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo_Network;
using Interface = contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo_Network_Interfaces;

constexpr char kProcessor[] = "CPU0";
constexpr char kNothing[] = "unknown";

// Sums of a thermal hour.
struct ThermalSums {
  double cpu = 0, external = 0, local = 0;
  std::array<double, 2> current{}, target{}, step{};

  void Add(const ThermalSample& sample) {
    cpu += static_cast<double>(sample.cpu_temp);
    external += static_cast<double>(sample.ext_sensor_temp);
    local += static_cast<double>(sample.loc_sensor_temp);
    current[0] += static_cast<double>(sample.fan1_current_tach_speed);
    target[0] += static_cast<double>(sample.fan1_target_tach_speed);
    step[0] += static_cast<double>(sample.fan1_speed_step);
    current[1] += static_cast<double>(sample.fan2_current_tach_speed);
    target[1] += static_cast<double>(sample.fan2_target_tach_speed);
    step[1] += static_cast<double>(sample.fan2_speed_step);
  }
};

void Stamp(chrono::sys_seconds hour, const char* suffix, std::uint32_t samples, const MachineFacts& facts,
           Upload& record) {
  record.Clear();
  record.set_collection_id(HourlyId(hour, facts.serial, suffix));
  // Summed up with the next hour's collection.
  record.set_local_time(WallClockText(hour + chrono::hours(1) + chrono::seconds(100) + facts.zone) + ".000Z");
  record.set_sample_points_actual(samples);
}

template <typename Sensors>
void AddSensor(Sensors& holder, const char* name, double celsius) {
  auto& sensor = *holder.add_temperature_sensors_info();
  sensor.set_temperature_celsius(static_cast<std::uint32_t>(celsius));
  sensor.set_sensor_name(name);
}

void AddFan(std::uint32_t number, double step, double current, double target, Hardware& hardware) {
  if (step == 0 && current == 0 && target == 0) return;
  auto& fan = *hardware.add_fans_info();
  fan.set_fan_id(number);
  const auto add = [&fan](const char* name, float value) {
    if (value == 0) return;
    auto& statistic = *fan.add_fan_statistics_info();
    statistic.set_fan_stat_name(name);
    statistic.set_fan_stat_value(value);
  };
  add("duty_cycle", static_cast<float>(step));
  add("tach_current", static_cast<float>(static_cast<std::uint32_t>(current)));
  add("tach_target", static_cast<float>(static_cast<std::uint32_t>(target)));
}

// What an interface's samples of an hour come to.
struct InterfaceSums {
  NetworkSample first;
  std::int64_t channel = 0;
  double speed = 0, sent_rate = 0, received_rate = 0, signal = 0;
  std::int64_t received = 0, sent = 0, co_channel = 0, adjacent_channel = 0, samples = 0;
  struct Profile {
    host::Blob hash;
    std::string authentication;
    std::string encryption;
    bool operator==(const Profile&) const = default;
  };
  std::vector<Profile> profiles;

  void Add(NetworkSample&& sample, std::int64_t noise) {
    channel = std::max(channel, sample.channel);
    speed += sample.nominal_speed;
    sent_rate += sample.tx_rate;
    received_rate += sample.rx_rate;
    signal += static_cast<double>(sample.signal_strength);
    received += sample.bytes_received;
    sent += sample.bytes_sent;
    const std::int64_t neighbours = sample.channel != 0 ? noise : 0;
    co_channel += sample.co_channel_interference_count + neighbours;
    adjacent_channel += sample.adjacent_channel_interference_count + neighbours;
    Profile profile{sample.profile_name_hash, sample.profile_authentication, sample.profile_encryption};
    if (std::find(profiles.begin(), profiles.end(), profile) == profiles.end()) profiles.push_back(std::move(profile));
    if (samples++ == 0) first = std::move(sample);
  }
};

struct NetworkSums {
  std::map<std::string, InterfaceSums> interfaces;
  std::int64_t vpn = 1, network = 1, internet = 1, connections = 0, failed = 0, errors = 0, failed_v6 = 0, samples = 0;
  std::int64_t vpn_of_hour = 0;

  void Add(NetworkSample&& sample, std::int64_t noise) {
    vpn_of_hour = std::max(vpn_of_hour, sample.is_vpn_connected);
    network = std::min(network, sample.has_network_access);
    internet = std::min(internet, sample.has_internet_access);
    connections = std::max(connections, sample.tcp_ipv4_current_connections);
    failed += sample.tcp_ipv4_failed_connections;
    errors += sample.tcp_ipv4_errors_received;
    failed_v6 += sample.tcp_ipv6_failed_connections;
    ++samples;
    interfaces[sample.interface_device_id].Add(std::move(sample), noise);
  }
};

std::string OrNothing(const std::string& text) {
  return text.empty() ? kNothing : text;
}

std::string Hexadecimal(const host::Blob& bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  constexpr unsigned kBits = 4;
  constexpr unsigned kLow = 0xF;
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += kDigits[byte >> kBits];
    text += kDigits[byte & kLow];
  }
  return text;
}

float WholeRate(double sum, std::int64_t samples) {
  return static_cast<float>(static_cast<std::uint32_t>(sum / static_cast<double>(samples)));
}

void AddInterface(const InterfaceSums& sums, Network& network) {
  Interface& entry = *network.add_interfaces_info();
  entry.set_adjacent_channel_interference_count(static_cast<std::uint32_t>(sums.adjacent_channel));
  entry.set_channel(static_cast<std::uint32_t>(sums.channel));
  entry.set_co_channel_interference_count(static_cast<std::uint32_t>(sums.co_channel));
  const double signal = static_cast<double>(static_cast<float>(sums.signal / static_cast<double>(sums.samples)));
  entry.set_signal_strength(static_cast<std::uint32_t>(static_cast<std::int32_t>(signal)));
  entry.set_bytes_received(static_cast<float>(sums.received));
  entry.set_bytes_sent(static_cast<float>(sums.sent));
  entry.set_nominal_speed(WholeRate(sums.speed, sums.samples));
  entry.set_receive_rate(WholeRate(sums.received_rate, sums.samples));
  entry.set_transmission_rate(WholeRate(sums.sent_rate, sums.samples));
  for (const InterfaceSums::Profile& used : sums.profiles) {
    auto& profile = *entry.add_w_lan_profiles();
    profile.set_w_lan_profile_name(OrNothing(Hexadecimal(used.hash)));
    profile.set_w_lan_profile_authentication(OrNothing(used.authentication));
    profile.set_w_lan_profile_encryption(OrNothing(used.encryption));
  }
  entry.set_device_id(sums.first.interface_device_id);
  entry.set_network_trust_level(sums.first.network_trust_level);
  entry.set_is_managed_network(sums.first.is_managed != 0 ? "Managed" : "Unmanaged");
  entry.set_radio_type(OrNothing(sums.first.radio_type));
}

}  // namespace

void FillThermalRecord(chrono::sys_seconds hour, chrono::sys_seconds simulated, const MachineFacts& facts,
                       std::int64_t load_percent, host::ThermalSimulation& thermal, Upload& record) {
  ThermalSums sums;
  for (int minute = 0; minute < host::kMinutesPerHour; ++minute) {
    sums.Add(thermal.Next(simulated + chrono::minutes(minute)));
  }
  constexpr double kSamples = host::kMinutesPerHour;
  const double warmer = facts.nature.warmer_by;
  Stamp(hour, "-TH", host::kMinutesPerHour, facts, record);
  Hardware& hardware = *record.mutable_hw_info();
  auto& processor = *hardware.add_cpus_info();
  processor.set_utilization_percent(static_cast<float>(load_percent));
  AddSensor(processor, "cpu_temp", sums.cpu / kSamples + warmer);
  processor.set_device_id(kProcessor);
  for (std::size_t fan = 0; facts.has_fans && fan < sums.step.size(); ++fan) {
    AddFan(static_cast<std::uint32_t>(fan + 1), sums.step[fan] / kSamples, sums.current[fan] / kSamples,
           sums.target[fan] / kSamples, hardware);
  }
  AddSensor(*hardware.mutable_system_board_info(), "ext_sensor", sums.external / kSamples);
  AddSensor(*hardware.mutable_system_board_info(), "loc_sensor", sums.local / kSamples + warmer / 2);
}

void FillNetworkRecord(chrono::sys_seconds hour, chrono::sys_seconds simulated, const MachineFacts& facts,
                       host::NetworkSimulation& network, Upload& record) {
  NetworkSums sums;
  for (int minute = 0; minute < host::kMinutesPerHour; minute += facts.minutes_between_network_samples) {
    for (NetworkSample& sample : network.Next(simulated + chrono::minutes(minute))) {
      sums.Add(std::move(sample), facts.channel_noise);
    }
  }
  Stamp(hour, "-NE", static_cast<std::uint32_t>(sums.samples), facts, record);
  Network& entry = *record.mutable_hw_info()->mutable_network_info();
  for (const auto& known : sums.interfaces) AddInterface(known.second, entry);
  auto& v4 = *entry.mutable_tcp_i_p_v4_stats_info();
  v4.set_current_connections(static_cast<std::uint32_t>(sums.connections));
  v4.set_failed_connections(static_cast<std::uint32_t>(sums.failed));
  v4.set_errors_received(static_cast<std::uint32_t>(sums.errors));
  entry.mutable_tcp_i_p_v6_stats_info()->set_failed_connections(static_cast<std::uint32_t>(sums.failed_v6));
  entry.set_has_internet_access(sums.internet != 0);
  entry.set_has_network_access(sums.network != 0);
  entry.set_is_vpn_connected(sums.vpn_of_hour != 0);
}

}  // namespace zt::telemetry::fleet
