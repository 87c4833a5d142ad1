#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>

#include "host/seed/random_numbers.h"

namespace zt::telemetry::host {

/// What a laptop's life is like; as it stands here, that of the laptop of `simulate`. Shares are of 1, capacities of
/// the battery as it was designed.
struct LaptopNature {
  double designed_mwh = 52'000;
  double first_health = 0.815;
  double health_lost_in_a_month = 0.03;
  int first_cycles = 412;
  double drive_bytes = 510'000'000'000;
  double first_used_share_of_drive = 0.865;
  double drive_filled_in_a_month = 0.05;
  double warmer_by = 0;  // degrees, of dust
};

inline constexpr std::uint64_t kBytesOfMebibyte = std::uint64_t{1024} * 1024;

/// A program that a laptop runs: its share of a processor at full load of the laptop, and its memory.
struct LaptopProgram {
  std::uint32_t id;
  const char* name;
  double at_load;  // percent
  double always;   // percent
  std::uint64_t memory_at_rest;
  std::uint64_t memory_of_load;
};

inline constexpr std::array kLaptopPrograms = std::to_array<LaptopProgram>({
    {4312, "video-call", 38, 0, 300 * kBytesOfMebibyte, 420 * kBytesOfMebibyte},
    {7820, "compiler", 160, 0, 90 * kBytesOfMebibyte, 1400 * kBytesOfMebibyte},
    {1596, "updater", 0, 2, 30 * kBytesOfMebibyte, 20 * kBytesOfMebibyte},
    {9004, "editor", 12, 0, 150 * kBytesOfMebibyte, 200 * kBytesOfMebibyte},
    {5120, "browser", 45, 1, 700 * kBytesOfMebibyte, 1800 * kBytesOfMebibyte},
    {2200, "backup", 3, 4, 120 * kBytesOfMebibyte, 60 * kBytesOfMebibyte},
});

/// Why a graphics card holds its clocks down.
enum class HeldClocks : std::uint8_t { kIdle, kByPower, kByHeat };

/// A laptop when it is sampled.
struct LaptopHour {
  struct Battery {
    double full_mwh = 0;
    double health = 0;  // `full_mwh` as a share of what it was designed for
    double charge = 0;  // as a share of `full_mwh`
    std::uint32_t cycles = 0;
    std::int32_t celsius = 0;
    std::int32_t millivolts = 0;
    bool discharges = false;
    bool rests_on_mains = false;
    std::uint32_t discharge_mw = 0;
    std::int32_t charge_mw = 0;
  };
  struct Card {
    std::uint32_t percent = 0;
    std::uint32_t encoder_percent = 0;
    std::uint32_t decoder_percent = 0;
    std::uint32_t celsius = 0;
    std::uint32_t clock_mhz = 0;
    std::uint32_t memory_clock_mhz = 0;
    std::uint64_t memory_bytes = 0;
    HeldClocks held = HeldClocks::kIdle;
  };
  struct Program {
    std::int64_t percent = 0;  // of one processor
    std::uint64_t memory_bytes = 0;
  };

  std::chrono::sys_seconds now;      // a collection takes its time, so it does not stand on the hour
  std::chrono::sys_seconds started;  // of the system
  std::chrono::seconds idle{0};      // since the last input
  std::int64_t load_percent = 0;
  Battery battery;
  std::int64_t free_physical_kib = 0;
  std::int64_t free_virtual_kib = 0;
  double drive_used = 0;  // share
  Card card;
  std::int64_t npu_bytes = 0;
  std::int64_t npu_celsius = 0;
  std::array<Program, kLaptopPrograms.size()> programs;  // those of `kLaptopPrograms`
};

/// A laptop over weeks, hour by hour: its battery ages, its drive fills, its user works by day and is away at night,
/// and once a week it is restarted, which takes two hours. The same numbers give the same life.
class LaptopHours {
 public:
  LaptopHours(std::chrono::sys_seconds begin, std::uint64_t random_seed, const LaptopNature& nature = {});

  /// The laptop as it is at `utc`; nothing when it is off. Called with each hour in turn.
  std::optional<LaptopHour> Next(std::chrono::sys_seconds utc);

 private:
  void SetClock(std::chrono::sys_seconds utc, double load, LaptopHour& hour);
  void SetBattery(std::chrono::sys_seconds utc, int hours, double load, LaptopHour& hour);
  void SetCard(double load, LaptopHour& hour);
  void SetPrograms(double load, LaptopHour& hour);

  LaptopNature nature_;
  std::chrono::sys_seconds begin_;
  std::chrono::sys_seconds started_;
  std::chrono::seconds idle_{0};
  double charge_ = 0.9;
  RandomNumbers random_;
};

}  // namespace zt::telemetry::host
