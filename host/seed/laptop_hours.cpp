#include "host/seed/laptop_hours.h"

#include <algorithm>

#include "host/seed/day_pattern.h"
#include "host/seed/rounding.h"

namespace zt::telemetry::host {
namespace {

namespace chrono = std::chrono;

constexpr double kHoursOfMonth = 720;
constexpr int kHoursOfWeek = 168;
constexpr int kRestartHours = 2;
constexpr double kIdleLoad = 0.1;  // below it nobody is there

constexpr int kHoursOfACycle = 28;
constexpr double kEmptyShare = 0.07;  // the laptop is plugged in before its battery is empty
constexpr double kChargingMilliwatts = 24'000;
constexpr double kIdleMilliwatts = 3'500;
constexpr double kBusyMilliwatts = 11'000;
constexpr double kFullShare = 0.985;

constexpr std::int64_t kFreeKibibytesAtRest = 10'400'000;
constexpr std::int64_t kFreeVirtualKibibytesAtRest = 14'000'000;
constexpr std::int64_t kKibibytesOfFullLoad = 8'000'000;

constexpr std::int64_t kNpuBytesAtRest = 180'000'000;
constexpr double kNpuBytesOfFullLoad = 2'400'000'000;

bool OnBattery(chrono::sys_seconds utc) {
  constexpr std::array kHours = {8, 9, 10, 11, 12, 16, 17, 19};
  const int hour = MinuteOfDay(utc) / kMinutesPerHour;
  return std::find(kHours.begin(), kHours.end(), hour) != kHours.end();
}

std::uint32_t WholeUnsigned(double value) {
  return static_cast<std::uint32_t>(Whole(value));
}

}  // namespace

LaptopHours::LaptopHours(chrono::sys_seconds begin, std::uint64_t random_seed, const LaptopNature& nature)
    : nature_(nature), begin_(begin), started_(begin - chrono::hours(5)), random_(random_seed) {}

std::optional<LaptopHour> LaptopHours::Next(chrono::sys_seconds utc) {
  const auto hours = chrono::duration_cast<chrono::hours>(utc - begin_).count();
  const auto of_week = hours % kHoursOfWeek;
  if (hours >= kHoursOfWeek && of_week < kRestartHours) {
    started_ = utc + chrono::minutes(35);
    return std::nullopt;
  }
  const double load = std::clamp(LoadAt(utc) + random_.Between(-0.06, 0.06), 0.01, 1.0);
  LaptopHour hour;
  hour.load_percent = Whole(load * 100);
  SetClock(utc, load, hour);
  SetBattery(utc, static_cast<int>(hours), load, hour);
  const auto used = Whole(load * static_cast<double>(kKibibytesOfFullLoad));
  hour.free_physical_kib = kFreeKibibytesAtRest - used;
  hour.free_virtual_kib = kFreeVirtualKibibytesAtRest - used;
  const double month = static_cast<double>(hours) / kHoursOfMonth;
  hour.drive_used = std::min(nature_.first_used_share_of_drive + nature_.drive_filled_in_a_month * month, 1.0);
  SetCard(load, hour);
  hour.npu_bytes = kNpuBytesAtRest + Whole(load * kNpuBytesOfFullLoad);  // blurs the background of calls
  hour.npu_celsius = Whole(33 + 34 * load + nature_.warmer_by);
  SetPrograms(load, hour);
  return hour;
}

void LaptopHours::SetClock(chrono::sys_seconds utc, double load, LaptopHour& hour) {
  hour.now = utc + chrono::seconds(Whole(random_.Between(60, 200)));
  hour.started = started_;
  idle_ = load < kIdleLoad ? idle_ + chrono::hours(1) : chrono::seconds(Whole(random_.Between(0, 240)));
  idle_ = std::min(idle_, chrono::duration_cast<chrono::seconds>(hour.now - started_));
  hour.idle = idle_;
}

void LaptopHours::SetBattery(chrono::sys_seconds utc, int hours, double load, LaptopHour& hour) {
  LaptopHour::Battery& battery = hour.battery;
  const double month = static_cast<double>(hours) / kHoursOfMonth;
  const double full = nature_.designed_mwh * (nature_.first_health - nature_.health_lost_in_a_month * month);
  const bool on_battery = OnBattery(utc) && charge_ > kEmptyShare;
  const double used = kIdleMilliwatts + kBusyMilliwatts * load;
  const double taken = charge_ < kFullShare ? std::min(kChargingMilliwatts, (1 - charge_) * full) : 0;
  charge_ = std::clamp(charge_ + (on_battery ? -used : taken) / full, kEmptyShare, 1.0);
  battery.full_mwh = full;
  battery.health = full / nature_.designed_mwh;
  battery.charge = charge_;
  battery.cycles = static_cast<std::uint32_t>(nature_.first_cycles + hours / kHoursOfACycle);
  battery.celsius = static_cast<std::int32_t>(Whole(27 + 14 * load));
  battery.millivolts = static_cast<std::int32_t>(Whole(10'900 + 1'700 * charge_));
  battery.discharges = on_battery;
  battery.rests_on_mains = !on_battery && taken == 0;
  battery.discharge_mw = on_battery ? WholeUnsigned(used) : 0;
  battery.charge_mw = on_battery ? 0 : static_cast<std::int32_t>(Whole(taken));
}

void LaptopHours::SetCard(double load, LaptopHour& hour) {
  LaptopHour::Card& card = hour.card;
  const double busy = std::clamp(load * 1.1 - 0.1 + random_.Between(-0.05, 0.05), 0.0, 1.0);
  card.percent = WholeUnsigned(busy * 92);
  card.encoder_percent = WholeUnsigned(busy > 0.4 ? 18 * busy : 0);
  card.decoder_percent = WholeUnsigned(busy > 0.2 ? 24 * busy : 2);
  card.celsius = WholeUnsigned(40 + 44 * busy + nature_.warmer_by);
  card.clock_mhz = WholeUnsigned(210 + 1'900 * busy);
  card.memory_clock_mhz = WholeUnsigned(busy > 0.15 ? 7'001 : 405);
  card.memory_bytes = (512 + static_cast<std::uint64_t>(Whole(4'200 * busy))) * kBytesOfMebibyte;
  card.held = busy < 0.1 ? HeldClocks::kIdle : busy > 0.85 ? HeldClocks::kByHeat : HeldClocks::kByPower;
}

void LaptopHours::SetPrograms(double load, LaptopHour& hour) {
  for (std::size_t i = 0; i < kLaptopPrograms.size(); ++i) {
    const LaptopProgram& program = kLaptopPrograms[i];
    const double busy = random_.Between(0.3, 1.0);
    hour.programs[i].percent = Whole((program.at_load * load + program.always) * busy);
    hour.programs[i].memory_bytes =
        program.memory_at_rest +
        static_cast<std::uint64_t>(Whole(static_cast<double>(program.memory_of_load) * load * busy));
  }
}

}  // namespace zt::telemetry::host
