#pragma once

#include <utility>

#include "battery_figures.h"
#include "zt/shared/battery/zt_batteries.h"

namespace zt::shared::battery {

/// A battery whose figures are known.
class KnownBattery final : public ZTBatteryInfo {
 public:
  explicit KnownBattery(BatteryFigures figures) : figures_(std::move(figures)) {}

  const char* GetSerialNumber() override { return figures_.serial_number.c_str(); }
  const char* GetCTNumber() override { return figures_.ct_number.c_str(); }
  std::int32_t GetDesignVoltage() override { return figures_.design_voltage_mv; }
  std::int32_t GetFurtherCapacity() override { return figures_.further_capacity_mwh; }
  std::int32_t GetFullChargeCapacity() override { return figures_.full_charge_capacity_mwh; }
  float GetFullChargePercent() override { return figures_.full_charge_percent; }
  std::uint32_t GetRemainingCapacity() override { return figures_.remaining_capacity_mwh; }
  float GetRemainingPercent() override { return figures_.remaining_percent; }
  std::uint32_t GetMaxErrorPercent() override { return figures_.max_error_percent; }
  std::uint32_t GetCycleCount() override { return figures_.cycle_count; }
  std::int32_t GetTemperature() override { return figures_.temperature_celsius; }
  std::int32_t GetVoltage() override { return figures_.voltage_mv; }
  std::uint32_t GetElectricCurrent() override { return figures_.electric_current_ma; }
  std::int32_t GetStatusCode() override { return figures_.status_code; }
  void GetSecondStatus(ZTBatteryStatus* status) override { GetChargeState(status); }
  void GetChargeState(ZTBatteryStatus* status) override {
    *status = {};
    status->on_ac_not_charging = figures_.on_ac_not_charging ? 1 : 0;
    status->discharging = figures_.discharging ? 1 : 0;
  }
  std::int32_t GetChargeRate() override { return figures_.charge_rate_mw; }
  std::uint32_t GetDischargeRate() override { return figures_.discharge_rate_mw; }

 private:
  BatteryFigures figures_;
};

}  // namespace zt::shared::battery
