#include "fleet/simulate/machine_facts.h"

#include <array>

#include "host/outbox/contract_version.h"
#include "host/seed/random_numbers.h"

namespace zt::telemetry::fleet {
namespace {

namespace chrono = std::chrono;
using host::RandomNumbers;

constexpr char kPlainSerial[] = "5CG0000001";
constexpr char kOlderContract[] = "0.9";

constexpr std::array kZones = {-480, -300, -180, 0, 60, 120, 330, 480};          // minutes
constexpr std::array kClockErrors = {-315'360'000, -86'400, 3'600, 94'608'000};  // seconds
constexpr int kNewestYear = 6;
constexpr std::uint32_t kDigits = 36;

// "5CG", the last digit of the year, the week, and four letters and digits that count.
std::string Serial(std::uint32_t number, int year, int week) {
  constexpr char kSigns[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  constexpr int kPlaces = 4;
  constexpr int kTen = 10;
  std::string serial = "5CG";
  serial += std::to_string(year);
  serial += std::to_string(week / kTen);
  serial += std::to_string(week % kTen);
  std::string count(kPlaces, '0');
  for (auto sign = count.rbegin(); sign != count.rend(); ++sign, number /= kDigits) *sign = kSigns[number % kDigits];
  return serial + count;
}

// Spreads neighbouring numbers: their first random numbers would be alike.
std::uint64_t Spread(std::uint64_t number) {
  constexpr std::uint64_t kStep = 0x9E3779B97F4A7C15;
  std::uint64_t bits = (number + 1) * kStep;
  bits = (bits ^ (bits >> 30U)) * 0xBF58476D1CE4E5B9;
  bits = (bits ^ (bits >> 27U)) * 0x94D049BB133111EB;
  return bits ^ (bits >> 31U);
}

host::LaptopNature Nature(RandomNumbers& random, int age) {
  host::LaptopNature nature;
  constexpr std::array kDesigned = {42'000.0, 52'000.0, 63'000.0, 72'000.0};
  constexpr std::array kDrives = {256'000'000'000.0, 512'000'000'000.0, 1'024'000'000'000.0};
  nature.designed_mwh = kDesigned.at(random.Bits() % kDesigned.size());
  nature.first_health = 1.0 - 0.045 * age - random.Between(0, 0.06);
  nature.health_lost_in_a_month = random.Between(0.002, 0.012);
  nature.first_cycles = 20 + age * 170 + static_cast<int>(random.Between(0, 120));
  nature.drive_bytes = kDrives.at(random.Bits() % kDrives.size());
  nature.first_used_share_of_drive = random.Between(0.2, 0.93);
  nature.drive_filled_in_a_month = random.OnceIn(8) ? random.Between(0.03, 0.25) : random.Between(0, 0.02);
  nature.warmer_by = random.OnceIn(12) ? random.Between(6, 14) : random.Between(0, 3);
  return nature;
}

}  // namespace

MachineFacts PlainMachine(std::uint32_t number, std::uint64_t random_seed) {
  MachineFacts facts;
  facts.serial = number == 0 ? kPlainSerial : Serial(number, kNewestYear, 1);
  facts.random_seed = random_seed + number;
  facts.contract_version = host::ContractVersion();
  return facts;
}

MachineFacts VariedMachine(std::uint32_t number, std::uint64_t random_seed, std::uint32_t hours) {
  RandomNumbers random(Spread(random_seed ^ Spread(number)));
  MachineFacts facts;
  const int age = static_cast<int>(random.Between(0, 6));  // years
  facts.serial = Serial(number, kNewestYear - age, 1 + static_cast<int>(random.Between(0, 52)));
  facts.random_seed = random.Bits();
  facts.nature = Nature(random, age);
  facts.zone = facts.standard_zone = chrono::minutes(kZones.at(random.Bits() % kZones.size()));
  facts.lives_by_its_zone = true;
  if (random.OnceIn(50)) facts.clock_error = chrono::seconds(kClockErrors.at(random.Bits() % kClockErrors.size()));
  facts.is_of_older_contract = random.OnceIn(age + 1 > 4 ? 2 : 10);
  facts.contract_version = facts.is_of_older_contract ? kOlderContract : host::ContractVersion();
  facts.has_battery = !random.OnceIn(20);
  facts.has_npu = age < 3 && !facts.is_of_older_contract;
  facts.has_card = random.OnceIn(3);
  facts.has_memory = !random.OnceIn(facts.is_of_older_contract ? 10 : 60);
  facts.has_fans = !random.OnceIn(60);
  facts.sleeps = random.OnceIn(1.6);
  if (random.OnceIn(40)) facts.breaks_at = static_cast<std::uint32_t>(random.Between(0, hours));
  if (random.OnceIn(30)) facts.sends_again = 0.25;
  if (random.OnceIn(30)) facts.sends_late = 0.3;
  facts.channel_noise = random.OnceIn(6) ? static_cast<std::int64_t>(random.Between(4, 20)) : 0;
  facts.minutes_between_network_samples = 10;
  facts.interfaces = random.OnceIn(4) ? 2 : 3;
  return facts;
}

}  // namespace zt::telemetry::fleet
