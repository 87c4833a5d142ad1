#include "battery_source.h"

#include <limits>
#include <utility>

#include "base/device_asking.h"
#include "base/time_limit.h"
#include "battery_limits.h"
#include "simulation/calls.h"
#include "simulation/machine.h"
#include "simulation/waiting.h"

namespace zt::shared::battery {
namespace {

using simulation::Disturbance;

constexpr std::uint32_t kDeviceFailed = 31;  // ERROR_GEN_FAILURE

BatteryFigures ToFigures(const simulation::Battery& battery) {
  BatteryFigures figures;
  figures.serial_number = battery.serial_number;
  figures.ct_number = battery.ct_number;
  figures.design_voltage_mv = battery.design_voltage_mv;
  figures.further_capacity_mwh = battery.further_capacity_mwh;
  figures.full_charge_capacity_mwh = battery.full_charge_capacity_mwh;
  figures.full_charge_percent = battery.full_charge_percent;
  figures.remaining_capacity_mwh = battery.remaining_capacity_mwh;
  figures.remaining_percent = battery.remaining_percent;
  figures.max_error_percent = battery.max_error_percent;
  figures.cycle_count = battery.cycle_count;
  figures.temperature_celsius = battery.temperature_celsius;
  figures.voltage_mv = battery.voltage_mv;
  figures.electric_current_ma = battery.electric_current;
  figures.status_code = battery.status_code;
  figures.on_ac_not_charging = battery.on_ac_not_charging;
  figures.discharging = battery.discharging;
  figures.charge_rate_mw = battery.charge_rate_mw;
  figures.discharge_rate_mw = battery.discharge_rate_mw;
  return figures;
}

BatteryFigures AbsurdFigures() {
  constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
  constexpr std::uint32_t kMost = std::numeric_limits<std::uint32_t>::max();
  BatteryFigures figures;
  figures.design_voltage_mv = kLeast;
  figures.further_capacity_mwh = kLeast;
  figures.full_charge_capacity_mwh = kLeast;
  figures.full_charge_percent = std::numeric_limits<float>::infinity();
  figures.remaining_capacity_mwh = kMost;
  figures.remaining_percent = std::numeric_limits<float>::quiet_NaN();
  figures.max_error_percent = kMost;
  figures.cycle_count = kMost;
  figures.temperature_celsius = kLeast;
  figures.voltage_mv = kLeast;
  figures.electric_current_ma = kMost;
  figures.status_code = kLeast;
  figures.charge_rate_mw = kLeast;
  figures.discharge_rate_mw = kMost;
  return figures;
}

using AllBatteries = base::TimeLimitBy<simulation::WaitClock>;

base::ControlOutcome Wait(std::uint32_t /*code*/, std::span<const std::byte> /*input*/, std::span<std::byte> /*output*/,
                          std::chrono::milliseconds limit) {
  if (simulation::WaitFor("Batteries", limit)) return {};
  simulation::WaitFor("Batteries", base::kCancelLimit);
  return {base::kRequestTimedOut, 0};
}

// As many requests as reading a battery takes.
bool AnswersInTime(const AllBatteries& all) {
  constexpr int kRequests = 7;
  const base::ControlDevice device = base::AskPatiently(Wait, kAnswerLimit, all);
  for (int i = 0; i < kRequests; ++i) {
    if (device(0, {}, {}).error != 0) return false;
  }
  return true;
}

void AddBattery(const simulation::Battery& battery, const AllBatteries& all, MachineBatteries& batteries) {
  const Disturbance met = simulation::Announce(
      "battery device", {Disturbance::kFails, Disturbance::kNull, Disturbance::kAbsurd, Disturbance::kEndlessText});
  const bool fails = met == Disturbance::kFails || battery.failure || !AnswersInTime(all);
  if (fails && batteries.error == 0) {
    batteries.error = battery.failure ? static_cast<std::uint32_t>(battery.failure->status) : kDeviceFailed;
  }
  if (fails || met == Disturbance::kNull) {
    batteries.by_index.emplace_back();
    return;
  }
  BatteryFigures figures = met == Disturbance::kAbsurd ? AbsurdFigures() : ToFigures(battery);
  if (met == Disturbance::kEndlessText) figures.serial_number = figures.ct_number = simulation::EndlessText();
  batteries.by_index.push_back(std::move(figures));
}

}  // namespace

MachineBatteries ReadBatteries() {
  const Disturbance met =
      simulation::Announce("battery devices", {Disturbance::kFails, Disturbance::kThrows, Disturbance::kEmpty});
  if (met == Disturbance::kFails) return {{}, kDeviceFailed};
  if (met == Disturbance::kEmpty) return {};
  const AllBatteries all(kAllBatteriesLimit);
  MachineBatteries batteries;
  for (const std::optional<simulation::Battery>& battery : simulation::CurrentMachine().batteries) {
    if (battery) {
      AddBattery(*battery, all, batteries);
    } else {
      batteries.by_index.emplace_back();
    }
  }
  return batteries;
}

}  // namespace zt::shared::battery
