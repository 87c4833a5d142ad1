#include "battery_source.h"

#include "simulation/machine.h"

namespace zt::shared::battery {
namespace {

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

}  // namespace

MachineBatteries ReadBatteries() {
  MachineBatteries batteries;
  for (const std::optional<simulation::Battery>& battery : simulation::CurrentMachine().batteries) {
    const bool fails = battery && battery->failure;
    batteries.by_index.push_back(battery && !fails ? std::optional(ToFigures(*battery)) : std::nullopt);
    if (fails && batteries.error == 0) batteries.error = static_cast<std::uint32_t>(battery->failure->status);
  }
  return batteries;
}

}  // namespace zt::shared::battery
