#pragma once

#include <cstdint>
#include <string>

namespace zt::shared::battery {

/// What the library tells of one battery, in the units of `ZTBatteryInfo`. A figure that is not known is 0, a text
/// empty.
struct BatteryFigures {
  std::string serial_number;
  std::string ct_number;
  std::int32_t design_voltage_mv = 0;
  std::int32_t further_capacity_mwh = 0;
  std::int32_t full_charge_capacity_mwh = 0;
  float full_charge_percent = 0;
  std::uint32_t remaining_capacity_mwh = 0;
  float remaining_percent = 0;
  std::uint32_t max_error_percent = 0;
  std::uint32_t cycle_count = 0;
  std::int32_t temperature_celsius = 0;
  std::int32_t voltage_mv = 0;
  std::uint32_t electric_current_ma = 0;
  std::int32_t status_code = 0;
  bool on_ac_not_charging = false;
  bool discharging = false;
  std::int32_t charge_rate_mw = 0;
  std::uint32_t discharge_rate_mw = 0;

  bool operator==(const BatteryFigures&) const = default;
};

}  // namespace zt::shared::battery
