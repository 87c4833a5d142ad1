#include "samplers/battery_info_msg.h"

#include <array>
#include <cstdint>
#include <string>

#include "platform/power_status.h"
#include "samplers/rounding.h"
#include "types/conversions.h"
#include "zt/shared/battery/zt_batteries.h"
#include "zt/telemetry/common/utils.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using common::Utils;
using contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo_BatteryInfo;
using shared::battery::ZTBatteries;
using shared::battery::ZTBatteryInfo;
using shared::battery::ZTBatteryStatus;

constexpr char kOnAcNotCharging[] = "onACNotCharging";
constexpr char kDischarging[] = "discharging";
constexpr char kCharging[] = "charging";

// Compared as a whole: a flag that has the bit of "no battery" among others still means a battery.
constexpr std::uint8_t kNoBattery = 128;
constexpr std::uint8_t kUnknownStatus = 255;

constexpr std::array<unsigned char, 2> kIndices = {0, 1};
constexpr unsigned long long kMostTextBytes = 32;

// The record's fields are unsigned: a negative figure of the library keeps its bits.
std::uint32_t Bits(std::int32_t value) {
  return static_cast<std::uint32_t>(value);
}

const char* ChargeState(const ZTBatteryStatus& flags) {
  if (flags.on_ac_not_charging != 0) return kOnAcNotCharging;
  return flags.discharging != 0 ? kDischarging : kCharging;
}

// The storage records hold one battery: the last one read.
void KeepForStorage(ZTBatteryInfo& battery, float remaining_percent) {
  AmdPmfSamples& amd_pmf = *PerfMessages::amd_pmf_;
  amd_pmf.set_battery_further_capacity_mwh(battery.GetFurtherCapacity());
  amd_pmf.set_battery_full_charge_capacity_mwh(battery.GetFullChargeCapacity());
  amd_pmf.set_battery_charge_rate_mw(battery.GetChargeRate());
  amd_pmf.set_battery_remaining_capacity_percent(TruncateToUint64(remaining_percent));
  PerfMessages::thermal_->set_battery_temperature(battery.GetTemperature());
}

// A plain ratio, about 1.06 for a battery slightly above its design voltage: the field's name says percent, and hosts
// rely on the ratio. Without a design voltage there is none.
void SetVoltageRatio(ZTBatteryInfo& battery, PcLogPerformanceSamplesAsCDM_HwInfo_BatteryInfo& entry) {
  const std::int32_t design_voltage = battery.GetDesignVoltage();
  if (design_voltage <= 0) return;
  const float ratio = static_cast<float>(battery.GetVoltage()) / static_cast<float>(design_voltage);
  entry.set_voltage_percent(RoundToTwoDecimals(ratio));
}

void AddBattery(ZTBatteryInfo& battery) {
  auto& entry = *PerfMessages::static_cdm_->mutable_hw_info()->add_batteries_info();
  const float remaining_percent = RoundToTwoDecimals(battery.GetRemainingPercent());
  KeepForStorage(battery, remaining_percent);

  ZTBatteryStatus flags{};
  battery.GetChargeState(&flags);
  // The library's readers ask for both blocks, in this order; nothing of the second is reported.
  ZTBatteryStatus second{};
  battery.GetSecondStatus(&second);
  entry.set_charge_state(ChargeState(flags));
  entry.set_battery_ct_number(Utils::AdjustString(battery.GetCTNumber(), kMostTextBytes));
  entry.set_battery_serial_number(Utils::AdjustString(battery.GetSerialNumber(), kMostTextBytes));
  entry.set_cycle_count(battery.GetCycleCount());
  entry.set_full_charge_capacity(Bits(battery.GetFullChargeCapacity()));
  entry.set_remaining_charge_capacity(battery.GetRemainingCapacity());
  entry.set_max_error_percent(battery.GetMaxErrorPercent());
  entry.set_electric_current(battery.GetElectricCurrent());
  entry.set_voltage(Bits(battery.GetVoltage()));
  entry.set_charge_rate_mw(Bits(battery.GetChargeRate()));
  entry.set_discharge_rate_mw(battery.GetDischargeRate());
  entry.add_battery_status(std::to_string(battery.GetStatusCode()));
  entry.set_full_charge_capacity_percent(RoundToTwoDecimals(battery.GetFullChargePercent()));
  entry.set_remaining_charge_capacity_percent(remaining_percent);
  SetVoltageRatio(battery, entry);
}

}  // namespace

BatteryInfoMsg::BatteryInfoMsg(const PerfMessages& other) : PerfMessages(other) {}

BatteryInfoMsg::BatteryInfoMsg() = default;

bool BatteryInfoMsg::HasBattery() {
  const std::optional<std::uint8_t> flag = platform::BatteryFlag();
  return flag && *flag != kNoBattery && *flag != kUnknownStatus;
}

void BatteryInfoMsg::PopulateStorageAndUploadProtos() {
  if (!HasBattery()) return;
  ZTBatteries batteries(true, true, nullptr, nullptr);
  for (const unsigned char index : kIndices) {
    if (ZTBatteryInfo* const battery = batteries.Query(index)) AddBattery(*battery);
  }
}

}  // namespace zt::telemetry::collector::performancesamples
