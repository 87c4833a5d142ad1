#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "host/seed/laptop_hours.h"

namespace zt::telemetry::fleet {

/// What is peculiar to a machine of a made-up fleet.
struct MachineFacts {
  std::string serial;
  std::uint64_t random_seed = 1;
  host::LaptopNature nature;
  std::chrono::minutes zone{-120};           // what its wall clock is ahead of UTC
  std::chrono::minutes standard_zone{-180};  // the same without daylight saving
  bool lives_by_its_zone = false;            // else by UTC, as the report's laptop does
  std::chrono::seconds clock_error{0};       // of its clock
  std::string contract_version;
  bool is_of_older_contract = false;  // without NPUs, and without the reasons for clocks that are held down
  bool has_battery = true;
  bool has_npu = true;
  bool has_card = true;                    // beside the processor's own graphics
  bool has_memory = true;                  // false: the source of the memory's figures fails
  bool has_fans = true;                    // that turn
  bool sleeps = false;                     // at night
  std::optional<std::uint32_t> breaks_at;  // hour from which on it is silent
  double sends_again = 0;                  // share of records that it sends twice
  double sends_late = 0;                   // share of records that come with the next hour's
  std::int64_t channel_noise = 0;          // neighbours on its Wi-Fi channel
  int minutes_between_network_samples = 1;
  std::uint32_t interfaces = 3;
};

/// The report's laptop, which sleeps and breaks as little as its records are sent twice: those of the collector on the
/// shipped profile are the same.
MachineFacts PlainMachine(std::uint32_t number, std::uint64_t random_seed);

/// A machine of a fleet in which each is different. `hours`: how long the fleet is looked at.
MachineFacts VariedMachine(std::uint32_t number, std::uint64_t random_seed, std::uint32_t hours);

}  // namespace zt::telemetry::fleet
