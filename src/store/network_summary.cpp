#include "store/network_summary.h"

#include <cstdint>
#include <exception>
#include <new>
#include <string>

#include "base/json_document.h"
#include "messages/record_parts.h"
#include "types/conversions.h"
#include "zt/telemetry/common/utils.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using base::JsonDocument;
using common::Utils;
using HardwareRecord = contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo;
using NetworkRecord = contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo_Network;
using contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo_Network_Interfaces;
using Json = JsonDocument::Json;

constexpr int kMaxInterfaces = 32;
constexpr int kMaxProfiles = 32;
constexpr unsigned long long kDeviceIdLimit = 128;
constexpr unsigned long long kTrustLevelLimit = 32;
constexpr unsigned long long kRadioTypeLimit = 32;
constexpr unsigned long long kProfileTextLimit = 128;
constexpr char kNetworkIdSuffix[] = "-NE";

// The readers below look a key up by inserting it: a missing one reads as null, which is no number and no text, and
// raises the JSON library's type error like any other wrong type. Fractions are converted here, since the library's own
// conversion of one out of range is undefined.

Json& At(Json& object, const char* key) {
  if (object.is_null()) object = Json::value_t::object;
  return object[key];
}

// A boolean or an integer as 64 bits, negative ones wrapped.
std::uint64_t WholeNumber(const Json& value) {
  if (value.is_boolean()) return value.get<bool>() ? 1 : 0;
  return value.is_number_unsigned() ? value.get<std::uint64_t>()
                                    : static_cast<std::uint64_t>(value.get<std::int64_t>());
}

std::uint64_t Unsigned64(Json& object, const char* key) {
  const Json& value = At(object, key);
  return value.is_number_float() ? TruncateToUint64(value.get<double>()) : WholeNumber(value);
}

std::uint32_t Unsigned32(Json& object, const char* key) {
  const Json& value = At(object, key);
  return value.is_number_float() ? TruncateToUint32(value.get<double>())
                                 : static_cast<std::uint32_t>(WholeNumber(value));
}

bool Flag(Json& object, const char* key) {
  const Json& value = At(object, key);
  return value.is_number_float() ? TruncateToInt64(value.get<double>()) != 0 : WholeNumber(value) != 0;
}

float Float(Json& object, const char* key) {
  return At(object, key).get<float>();
}

// A rate without its fraction.
float WholeRate(float average) {
  return static_cast<float>(TruncateToUint32(average));
}

std::string Text(Json& object, const char* key, unsigned long long limit) {
  return Utils::AdjustString(At(object, key).get<std::string>(), limit);
}

bool NamesItsDevice(const Json& element) {
  const auto id = element.is_object() ? element.find("interface_device_id") : element.end();
  return id != element.end() && id->is_string();
}

void AddInterfaceFigures(Json& element, PcLogPerformanceSamplesAsCDM_HwInfo_Network_Interfaces& record) {
  record.set_device_id(Text(element, "interface_device_id", kDeviceIdLimit));
  record.set_network_trust_level(Text(element, "network_trust_level", kTrustLevelLimit));
  record.set_radio_type(Text(element, "radio_type", kRadioTypeLimit));
  record.set_adjacent_channel_interference_count(Unsigned32(element, "adjacent_channel_interference_count"));
  record.set_bytes_received(static_cast<float>(Unsigned64(element, "bytes_received")));
  record.set_bytes_sent(static_cast<float>(Unsigned64(element, "bytes_sent")));
  record.set_channel(Unsigned32(element, "channel"));
  record.set_co_channel_interference_count(Unsigned32(element, "co_channel_interference_count"));
  record.set_receive_rate(WholeRate(Float(element, "rx_avg")));
  record.set_transmission_rate(WholeRate(Float(element, "tx_avg")));
  record.set_signal_strength(static_cast<std::uint32_t>(TruncateToInt32(Float(element, "rssi_avg"))));
  record.set_nominal_speed(WholeRate(Float(element, "speed_avg")));
  record.set_is_managed_network(Flag(element, "is_managed") ? "Managed" : "Unmanaged");
}

void AddProfiles(Json& profiles, PcLogPerformanceSamplesAsCDM_HwInfo_Network_Interfaces& record) {
  for (Json& profile : profiles) {
    if (record.w_lan_profiles_size() >= kMaxProfiles) return;
    const std::string name = Text(profile, "profile_name_hash", kProfileTextLimit);
    const std::string authentication = Text(profile, "profile_authentication", kProfileTextLimit);
    const std::string encryption = Text(profile, "profile_encryption", kProfileTextLimit);
    auto& entry = AddEntry(*record.mutable_w_lan_profiles());
    entry.set_w_lan_profile_name(name);
    entry.set_w_lan_profile_authentication(authentication);
    entry.set_w_lan_profile_encryption(encryption);
  }
}

void AddInterfaces(Json& hour, NetworkRecord& network) {
  if (!hour.contains("interfaces_info")) return;
  for (Json& element : hour["interfaces_info"]) {
    if (network.interfaces_info_size() >= kMaxInterfaces) return;
    if (!NamesItsDevice(element)) continue;
    auto& record = AddEntry(*network.mutable_interfaces_info());
    AddInterfaceFigures(element, record);
    if (element.contains("w_lan_profiles")) AddProfiles(element["w_lan_profiles"], record);
  }
}

void SetTcpStatistics(Json& hour, NetworkRecord& network) {
  Json& v4 = hour["tcp_ipv4_stats_info"];
  auto& v4_record =
      OpenSection(network, &NetworkRecord::mutable_tcp_i_p_v4_stats_info, &NetworkRecord::clear_tcp_i_p_v4_stats_info);
  v4_record.set_current_connections(Unsigned32(v4, "current_connections"));
  v4_record.set_errors_received(Unsigned32(v4, "errors_received"));
  v4_record.set_failed_connections(Unsigned32(v4, "failed_connections"));
  Json& v6 = hour["tcp_ipv6_stats_info"];
  auto& v6_record =
      OpenSection(network, &NetworkRecord::mutable_tcp_i_p_v6_stats_info, &NetworkRecord::clear_tcp_i_p_v6_stats_info);
  v6_record.set_failed_connections(Unsigned32(v6, "failed_connections"));
}

void SetFlags(Json& hour, NetworkRecord& network) {
  network.set_is_vpn_connected(Flag(hour, "is_vpn_connected"));
  network.set_has_network_access(Flag(hour, "has_network_access"));
  network.set_has_internet_access(Flag(hour, "has_internet_access"));
}

NetworkRecord& OpenNetwork(PcLogPerformanceSamplesAsCDM& record) {
  return OpenSection(OpenHardware(record), &HardwareRecord::mutable_network_info, &HardwareRecord::clear_network_info);
}

// Fills the record with one hour; false for an hour that holds nothing or is no JSON. Throws when its text is not of
// the form that the summary query gives.
bool FillHour(const SummaryRow& row, PcLogPerformanceSamplesAsCDM& record) {
  JsonDocument document;
  if (!document.Read(row.at("network_info"))) return false;
  Json& hour = document.Root();
  if (!hour.is_object() || hour.empty()) return false;
  auto& network = OpenNetwork(record);
  AddInterfaces(hour, network);
  SetTcpStatistics(hour, network);
  SetFlags(hour, network);
  StampHour(row, kNetworkIdSuffix, Unsigned32(hour, "num_samples"), record);
  return true;
}

void ResetNetworkHour(PcLogPerformanceSamplesAsCDM& record) {
  ClearStamps(record);
  auto& network = OpenNetwork(record);
  network.clear_interfaces_info();
  network.clear_tcp_i_p_v4_stats_info();
  network.clear_tcp_i_p_v6_stats_info();
  network.set_is_vpn_connected(false);
  network.set_has_network_access(false);
  network.set_has_internet_access(false);
}

}  // namespace

void SendNetworkHours(const std::vector<SummaryRow>& hours, const SendRecord& send) {
  PcLogPerformanceSamplesAsCDM record;
  for (const SummaryRow& hour : hours) {
    try {
      if (FillHour(hour, record)) send(record);
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception&) {
      // An hour that breaks midway is dropped whole: half of its figures would pass for all of them.
    }
    ResetNetworkHour(record);
  }
}

}  // namespace zt::telemetry::collector::performancesamples
