#include "host/seed/network_simulation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "host/seed/day_pattern.h"
#include "host/seed/rounding.h"

namespace zt::telemetry::host {
namespace {

constexpr char kDomainNetwork[] = "Domain Authenticated";
constexpr double kWiredSpeed = 1000;
constexpr double kVpnSpeed = 100;
constexpr double kBusiestMegabytesAMinute = 60;

// Where the machine's user is, and the Wi-Fi network there.
struct Place {
  int until_minute;  // of the day
  std::uint64_t profile;
  const char* trust_level;
  bool managed;
  const char* authentication;
  const char* encryption;
  const char* radio_type;
  std::int64_t channel;
  std::int64_t co_channel;
  std::int64_t adjacent_channel;
  double speed;
  double signal;
};

constexpr Place Home(int until) {
  return {until, 1, "Private", false, "WPA3SAE", "AES", "802.11ac", 149, 1, 3, 866, -61};
}
constexpr Place Office(int until) {
  return {until, 2, kDomainNetwork, true, "WPA2", "AES", "802.11ax", 36, 1, 6, 1201, -52};
}
constexpr Place Cafe(int until) {
  return {until, 3, "Public", false, "WPA2PSK", "AES", "802.11n", 6, 1, 7, 144, -71};
}

// The day's places in order. They change in the middle of hours, so that an hour can hold several profiles.
constexpr int At(int hour, int minute) {
  return hour * 60 + minute;
}
constexpr std::array kDay = {Home(At(8, 30)), Office(At(12, 15)), Cafe(At(13, 0)), Office(At(17, 45)), Home(At(24, 0))};

constexpr int kVpnFrom = At(9, 0);
constexpr int kVpnUntil = At(17, 0);

// Once in so many minutes, for at most so many.
constexpr double kInternetLostOnceIn = 900;
constexpr double kInternetLostAtMost = 8;
constexpr double kNetworkLostOnceIn = 4000;
constexpr double kNetworkLostAtMost = 3;

// Apart from each other and from the seeds that people choose.
constexpr std::uint64_t kInterfaceIdentities = 0x1A7E2FACE0000000;
constexpr std::uint64_t kProfileIdentities = 0x9120F11E50000000;
constexpr std::size_t kProfileHashBytes = 32;

const Place& PlaceAt(int minute) {
  return *std::find_if(kDay.begin(), kDay.end(), [minute](const Place& place) { return minute < place.until_minute; });
}

Blob MakeProfileHash(std::uint64_t profile) {
  constexpr unsigned kByteBits = 8;
  RandomNumbers identity(kProfileIdentities + profile);
  Blob hash;
  while (hash.size() < kProfileHashBytes) {
    std::uint64_t bits = identity.Bits();
    for (std::size_t i = 0; i < sizeof(bits); ++i, bits >>= kByteBits)
      hash.push_back(static_cast<std::uint8_t>(bits & 0xFF));
  }
  return hash;
}

// Made once each: an hour asks for them sixty times.
const Blob& ProfileHash(std::uint64_t profile) {
  static const std::array kHashes = {MakeProfileHash(1), MakeProfileHash(2), MakeProfileHash(3)};
  return kHashes.at(profile - 1);
}

std::string DeviceId(std::uint32_t index) {
  RandomNumbers identity(kInterfaceIdentities + index);
  const std::uint64_t high = identity.Bits();
  const std::uint64_t low = identity.Bits();
  const auto part = [](std::uint64_t bits, int from) { return static_cast<unsigned>((bits >> from) & 0xFFFF); };
  constexpr std::size_t kLength = 39;  // with the zero at its end
  std::array<char, kLength> text{};
  std::snprintf(text.data(), text.size(), "{%04X%04X-%04X-%04X-%04X-%04X%04X%04X}", part(high, 48), part(high, 32),
                part(high, 16), part(high, 0), part(low, 48), part(low, 32), part(low, 16), part(low, 0));
  return text.data();
}

}  // namespace

NetworkSimulation::NetworkSimulation(std::uint64_t random_seed, std::uint32_t interfaces) : random_(random_seed) {
  constexpr std::array kKinds = {Kind::kWired, Kind::kWiFi, Kind::kVpn};
  for (std::uint32_t i = 0; i < interfaces; ++i) interfaces_.push_back({kKinds[i % kKinds.size()], DeviceId(i)});
}

std::vector<NetworkSample> NetworkSimulation::Next(std::chrono::sys_seconds time) {
  const NetworkSample machine = OfWholeMachine(time);
  std::vector<NetworkSample> samples(interfaces_.size(), machine);
  for (std::size_t i = 0; i < interfaces_.size(); ++i) AddInterface(interfaces_[i], samples[i]);
  return samples;
}

// What every interface's sample of one time has in common.
NetworkSample NetworkSimulation::OfWholeMachine(std::chrono::sys_seconds time) {
  const auto lasts = [this](int& minutes, double once_in, double at_most) {
    if (minutes > 0) --minutes;
    if (random_.OnceIn(once_in)) minutes = static_cast<int>(random_.Between(1, at_most + 1));
    return minutes > 0;
  };
  const bool no_network = lasts(minutes_without_network_, kNetworkLostOnceIn, kNetworkLostAtMost);
  const bool no_internet = lasts(minutes_without_internet_, kInternetLostOnceIn, kInternetLostAtMost);
  const int minute = MinuteOfDay(time);
  const double load = LoadAt(time);

  NetworkSample sample;
  sample.time = time;
  sample.is_vpn_connected = minute >= kVpnFrom && minute < kVpnUntil && !no_network;
  sample.has_network_access = !no_network;
  sample.has_internet_access = !no_network && !no_internet;
  sample.tcp_ipv4_current_connections = no_network ? 0 : Whole(12 + load * 150 + random_.Between(-6, 6));
  sample.tcp_ipv4_failed_connections = random_.OnceIn(no_internet ? 2 : 20) ? Whole(random_.Between(1, 4)) : 0;
  sample.tcp_ipv4_errors_received = random_.OnceIn(200) ? 1 : 0;
  sample.tcp_ipv6_failed_connections = random_.OnceIn(no_internet ? 3 : 40) ? Whole(random_.Between(1, 2)) : 0;
  return sample;
}

void NetworkSimulation::AddInterface(const Interface& interface, NetworkSample& sample) {
  sample.interface_device_id = interface.device_id;
  switch (interface.kind) {
    case Kind::kWired:
      AddWired(sample);
      return AddTraffic(0.6, sample);
    case Kind::kWiFi:
      AddWiFi(sample);
      return AddTraffic(0.3, sample);
    case Kind::kVpn:
      AddVpn(sample);
      return AddTraffic(sample.is_vpn_connected != 0 ? 0.2 : 0, sample);
  }
}

void NetworkSimulation::AddWired(NetworkSample& sample) const {
  sample.network_trust_level = kDomainNetwork;
  sample.is_managed = 1;
  sample.nominal_speed = kWiredSpeed;
  sample.tx_rate = kWiredSpeed;
  sample.rx_rate = kWiredSpeed;
}

void NetworkSimulation::AddWiFi(NetworkSample& sample) {
  const Place& place = PlaceAt(MinuteOfDay(sample.time));
  sample.network_trust_level = place.trust_level;
  sample.is_managed = place.managed;
  sample.channel = place.channel;
  sample.radio_type = place.radio_type;
  sample.nominal_speed = place.speed;
  sample.tx_rate = Tenths(place.speed * random_.Between(0.6, 0.9));
  sample.rx_rate = Tenths(place.speed * random_.Between(0.7, 1.0));
  sample.signal_strength = Whole(place.signal + random_.Between(-4, 4));
  sample.co_channel_interference_count = place.co_channel;
  sample.adjacent_channel_interference_count = place.adjacent_channel;
  sample.profile_name_hash = ProfileHash(place.profile);
  sample.profile_authentication = place.authentication;
  sample.profile_encryption = place.encryption;
}

void NetworkSimulation::AddVpn(NetworkSample& sample) const {
  sample.network_trust_level = kDomainNetwork;
  sample.is_managed = 1;
  sample.nominal_speed = kVpnSpeed;
  sample.tx_rate = kVpnSpeed;
  sample.rx_rate = kVpnSpeed;
}

// `share`: the interface's part of what the machine sends and receives.
void NetworkSimulation::AddTraffic(double share, NetworkSample& sample) {
  constexpr double kBytesPerMegabyte = 1'000'000;
  const double reachable = sample.has_network_access != 0 ? LoadAt(sample.time) : 0;
  const double busiest = reachable * share * kBusiestMegabytesAMinute * kBytesPerMegabyte;
  sample.bytes_received = Whole(busiest * random_.Between(0.2, 1));
  sample.bytes_sent = Whole(busiest * random_.Between(0.02, 0.15));
}

}  // namespace zt::telemetry::host
