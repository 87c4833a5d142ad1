#include "fleet/simulate/fleet_machine.h"

#include <utility>

#include "fleet/simulate/hourly_records.h"
#include "host/seed/day_pattern.h"

namespace zt::telemetry::fleet {
namespace {

namespace chrono = std::chrono;

// Apart from each other and from those of the seed command's own simulations.
constexpr std::uint64_t kNetworkSeedOffset = 0x5EED;
constexpr std::uint64_t kDisturbanceSeedOffset = 0xD157;

// The user's day is that of the machine's zone, where it lives by it.
chrono::minutes Ahead(const MachineFacts& facts) {
  return facts.lives_by_its_zone ? facts.zone : chrono::minutes(0);
}

constexpr int kFirstHourAsleep = 23;
constexpr int kFirstHourAwake = 7;

}  // namespace

FleetMachine::FleetMachine(MachineFacts facts, chrono::sys_seconds begin)
    : facts_(std::move(facts)),
      begin_(begin),
      hours_(begin + Ahead(facts_), facts_.random_seed, facts_.nature),
      thermal_(facts_.random_seed),
      network_(facts_.random_seed + kNetworkSeedOffset, facts_.interfaces),
      disturbances_(facts_.random_seed + kDisturbanceSeedOffset) {}

bool FleetMachine::IsAwake(chrono::sys_seconds utc) const {
  const auto hour = static_cast<std::uint32_t>(chrono::duration_cast<chrono::hours>(utc - begin_).count());
  if (facts_.breaks_at.has_value() && hour >= *facts_.breaks_at) return false;
  if (!facts_.sleeps) return true;
  const int of_day = host::MinuteOfDay(utc + facts_.zone) / host::kMinutesPerHour;
  return of_day >= kFirstHourAwake && of_day < kFirstHourAsleep;
}

// Sent now, or with the next hour's, or both.
void FleetMachine::Give(Upload& record, const Take& take) {
  const bool is_late = facts_.sends_late > 0 && disturbances_.Between(0, 1) < facts_.sends_late;
  if (!is_late) take(record, facts_);
  const bool comes_again = facts_.sends_again > 0 && disturbances_.Between(0, 1) < facts_.sends_again;
  if (is_late || comes_again) later_.push_back(record);
}

void FleetMachine::Send(chrono::sys_seconds utc, const Take& take) {
  const std::vector<Upload> overdue = std::exchange(later_, {});
  const chrono::minutes ahead = Ahead(facts_);
  const chrono::sys_seconds simulated = utc + ahead;
  std::optional<host::LaptopHour> hour = hours_.Next(simulated);
  if (IsAwake(utc)) {
    const std::int64_t load = hour.has_value() ? hour->load_percent : 0;
    if (hour.has_value()) {
      hour->now -= ahead;
      hour->started -= ahead;
      FillLiveRecord(*hour, facts_, live_, record_);
      Give(record_, take);
    }
    const chrono::sys_seconds by_its_clock = utc + chrono::floor<chrono::hours>(facts_.clock_error);
    FillThermalRecord(by_its_clock, simulated, facts_, load, thermal_, record_);
    Give(record_, take);
    FillNetworkRecord(by_its_clock, simulated, facts_, network_, record_);
    Give(record_, take);
  }
  // Behind the newer ones: out of order.
  for (const Upload& record : overdue) take(record, facts_);
}

}  // namespace zt::telemetry::fleet
