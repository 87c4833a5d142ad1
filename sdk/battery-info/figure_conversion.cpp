#include "figure_conversion.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "without_blanks.h"

namespace zt::shared::battery {
namespace {

using smbios::TypePortableBattery;

// Bits of the smart battery's status word that the system's answers tell.
constexpr std::int32_t kInitialised = 0x80;
constexpr std::int32_t kDischargingOrAtRest = 0x40;
constexpr std::int32_t kFullyCharged = 0x20;
constexpr std::int32_t kLowChargeAlarm = 0x200;

constexpr double kFreezingTenthKelvin = 2731.5;
constexpr std::uint32_t kLeastTenthKelvin = 1;  // drivers without a sensor give 0
constexpr std::uint32_t kMostTenthKelvin = 10'000;
constexpr std::uint64_t kMillivoltsPerVolt = 1000;
constexpr float kWhole = 100.0F;

bool Has(std::uint32_t bits, std::uint32_t bit) {
  return (bits & bit) != 0;
}

bool IsRelative(const BatteryReading& reading) {
  return Has(reading.information.capabilities, protocol::kCapacityRelative);
}

// A capacity that fits the library's signed figures; anything beyond is as good as unknown.
std::int32_t MilliwattHours(const BatteryReading& reading, std::uint32_t capacity) {
  constexpr std::uint32_t kMost = std::numeric_limits<std::int32_t>::max();
  return IsRelative(reading) || capacity > kMost ? 0 : static_cast<std::int32_t>(capacity);
}

// Capacities in units of the driver's own have a true ratio all the same.
float PercentOf(std::uint32_t part, std::uint32_t whole) {
  const bool known = part != protocol::kUnknownCapacity && whole != protocol::kUnknownCapacity && whole != 0;
  return known ? static_cast<float>(part) / static_cast<float>(whole) * kWhole : 0.0F;
}

std::int32_t Millivolts(std::uint32_t voltage) {
  constexpr std::uint32_t kMost = std::numeric_limits<std::int32_t>::max();
  return voltage > kMost ? 0 : static_cast<std::int32_t>(voltage);
}

// The nearest whole degree. 0 degrees is also what an unknown temperature is.
std::int32_t WholeCelsius(const std::optional<std::uint32_t>& tenth_kelvin) {
  if (!tenth_kelvin || *tenth_kelvin < kLeastTenthKelvin || *tenth_kelvin > kMostTenthKelvin) return 0;
  return static_cast<std::int32_t>(std::lround((*tenth_kelvin - kFreezingTenthKelvin) / 10));
}

void AddRates(const BatteryReading& reading, BatteryFigures& figures) {
  const std::int32_t rate = reading.status.rate;
  if (IsRelative(reading) || rate == protocol::kUnknownRate) return;
  figures.charge_rate_mw = std::max(rate, 0);
  figures.discharge_rate_mw = static_cast<std::uint32_t>(std::max(-rate, 0));
  if (figures.voltage_mv <= 0) return;
  const std::uint64_t power_mw = static_cast<std::uint64_t>(figures.charge_rate_mw) + figures.discharge_rate_mw;
  const std::uint64_t current = power_mw * kMillivoltsPerVolt / static_cast<std::uint64_t>(figures.voltage_mv);
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint32_t>::max();
  figures.electric_current_ma = static_cast<std::uint32_t>(std::min(current, kMost));
}

// A battery at rest while another one powers the machine counts as discharging, as in the smart battery's own status
// word: it is not charged, and no mains are there to charge it.
void AddChargeState(std::uint32_t power_state, BatteryFigures& figures) {
  const bool charging = Has(power_state, protocol::kCharging);
  const bool on_line = Has(power_state, protocol::kPowerOnLine);
  const bool discharging = Has(power_state, protocol::kDischarging);
  figures.discharging = discharging || (!charging && !on_line);
  figures.on_ac_not_charging = on_line && !charging && !discharging;
}

std::int32_t StatusCode(const BatteryReading& reading, const BatteryFigures& figures) {
  std::int32_t code = kInitialised;
  if (figures.discharging || figures.on_ac_not_charging) code |= kDischargingOrAtRest;
  if (PercentOf(reading.status.capacity, reading.information.full_charged_capacity) >= kWhole) code |= kFullyCharged;
  if (Has(reading.status.power_state, protocol::kCritical)) code |= kLowChargeAlarm;
  return code;
}

const TypePortableBattery* FindStructure(const BatteryReading& reading, const std::vector<TypePortableBattery>& all,
                                         bool only_battery) {
  const auto with = [&all](const std::string& text, std::optional<std::string> TypePortableBattery::*field) {
    const auto found = std::find_if(all.begin(), all.end(), [&](const TypePortableBattery& structure) {
      return !text.empty() && WithoutBlanks((structure.*field).value_or("")) == text;
    });
    return found != all.end() ? &*found : nullptr;
  };
  if (const auto* same = with(reading.serial_number, &TypePortableBattery::serial_number)) return same;
  if (const auto* same = with(reading.device_name, &TypePortableBattery::device_name)) return same;
  return only_battery && all.size() == 1 ? &all.front() : nullptr;
}

}  // namespace

bool PowersTheMachine(const BatteryReading& reading) {
  const std::uint32_t capabilities = reading.information.capabilities;
  return Has(capabilities, protocol::kSystemBattery) && !Has(capabilities, protocol::kShortTerm);
}

BatteryFigures FiguresOf(const BatteryReading& reading) {
  const protocol::Information& information = reading.information;
  const protocol::Status& status = reading.status;
  BatteryFigures figures;
  figures.serial_number = !reading.serial_number.empty() ? reading.serial_number : reading.unique_id;
  figures.further_capacity_mwh = MilliwattHours(reading, information.designed_capacity);
  figures.full_charge_capacity_mwh = MilliwattHours(reading, information.full_charged_capacity);
  figures.full_charge_percent = PercentOf(information.full_charged_capacity, information.designed_capacity);
  figures.remaining_capacity_mwh = static_cast<std::uint32_t>(MilliwattHours(reading, status.capacity));
  figures.remaining_percent = PercentOf(status.capacity, information.full_charged_capacity);
  figures.cycle_count = information.cycle_count;
  figures.temperature_celsius = WholeCelsius(reading.temperature_tenth_kelvin);
  figures.voltage_mv = Millivolts(status.voltage);
  AddRates(reading, figures);
  AddChargeState(status.power_state, figures);
  figures.status_code = StatusCode(reading, figures);
  return figures;
}

std::vector<BatteryFigures> FiguresOf(const std::vector<BatteryReading>& readings,
                                      const std::vector<TypePortableBattery>& firmware_batteries) {
  std::vector<BatteryFigures> all;
  for (const BatteryReading& reading : readings) {
    BatteryFigures& figures = all.emplace_back(FiguresOf(reading));
    const TypePortableBattery* structure = FindStructure(reading, firmware_batteries, readings.size() == 1);
    if (structure == nullptr) continue;
    figures.design_voltage_mv = structure->design_voltage_mv.value_or(0);
    figures.max_error_percent = structure->max_error_percent.value_or(0);
  }
  return all;
}

}  // namespace zt::shared::battery
