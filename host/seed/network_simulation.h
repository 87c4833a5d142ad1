#pragma once

#include <cstdint>
#include <vector>

#include "host/seed/random_numbers.h"
#include "host/seed/samples.h"

namespace zt::telemetry::host {

/// Made-up readings of a machine's network interfaces: wired, Wi-Fi and VPN in turn. The identities of interfaces and
/// Wi-Fi profiles do not depend on the random seed, so that samples can be added to those of an earlier run.
class NetworkSimulation {
 public:
  NetworkSimulation(std::uint64_t random_seed, std::uint32_t interfaces);

  /// The samples of all interfaces at `time`, a minute after the ones before.
  std::vector<NetworkSample> Next(std::chrono::sys_seconds time);

 private:
  enum class Kind { kWired, kWiFi, kVpn };
  struct Interface {
    Kind kind;
    std::string device_id;
  };

  NetworkSample OfWholeMachine(std::chrono::sys_seconds time);
  void AddInterface(const Interface& interface, NetworkSample& sample);
  void AddWired(NetworkSample& sample) const;
  void AddWiFi(NetworkSample& sample);
  void AddVpn(NetworkSample& sample) const;
  void AddTraffic(double share, NetworkSample& sample);

  RandomNumbers random_;
  std::vector<Interface> interfaces_;
  int minutes_without_network_ = 0;
  int minutes_without_internet_ = 0;
};

}  // namespace zt::telemetry::host
