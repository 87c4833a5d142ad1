#include "samplers/battery_info_msg.h"

#include <array>
#include <cstdint>
#include <string>

#include "messages/record_parts.h"
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
constexpr unsigned long long kMostBatteryTextBytes = 32;

// The record's fields are unsigned: a negative figure of the library keeps its bits.
std::uint32_t Bits(std::int32_t value) {
  return static_cast<std::uint32_t>(value);
}

const char* ChargeState(const ZTBatteryStatus& flags) {
  if (flags.on_ac_not_charging != 0) return kOnAcNotCharging;
  return flags.discharging != 0 ? kDischarging : kCharging;
}

struct Texts {
  std::string serial_number;
  std::string ct_number;
};

struct Voltages {
  std::int32_t design_mv;
  std::int32_t present_mv;
};

// What goes into the storage records, and most of it into the entry too.
struct StoredFigures {
  std::int32_t full_charge_capacity_mwh;
  std::int32_t charge_rate_mw;
  float remaining_percent;  // two decimals
  std::int32_t temperature_celsius;
  std::int32_t further_capacity_mwh;
};

std::string CutText(const char* text) {
  return Utils::AdjustString(text, kMostBatteryTextBytes);
}

// The storage records hold one battery: the last one read.
void KeepForStorage(const StoredFigures& figures) {
  AmdPmfSamples& amd_pmf = *PerfMessages::amd_pmf_;
  amd_pmf.set_battery_further_capacity_mwh(figures.further_capacity_mwh);
  amd_pmf.set_battery_full_charge_capacity_mwh(figures.full_charge_capacity_mwh);
  amd_pmf.set_battery_charge_rate_mw(figures.charge_rate_mw);
  amd_pmf.set_battery_remaining_capacity_percent(TruncateToUint64(figures.remaining_percent));
  PerfMessages::thermal_->set_battery_temperature(figures.temperature_celsius);
}

// A plain ratio, about 1.06 for a battery slightly above its design voltage: the field's name says percent, and hosts
// rely on the ratio. Without a design voltage there is none.
void SetVoltageRatio(const Voltages& voltages, PcLogPerformanceSamplesAsCDM_HwInfo_BatteryInfo& entry) {
  if (voltages.design_mv <= 0) return;
  const float ratio = static_cast<float>(voltages.present_mv) / static_cast<float>(voltages.design_mv);
  entry.set_voltage_percent(RoundToTwoDecimals(ratio));
}

// Each figure is asked for once, so that the records agree on it, and in the order in which the library's readers ask.
void AddBattery(ZTBatteryInfo& battery) {
  const Texts texts{CutText(battery.GetSerialNumber()), CutText(battery.GetCTNumber())};
  const Voltages voltages{battery.GetDesignVoltage(), battery.GetVoltage()};
  auto& entry = AddEntry(*OpenHardware(*PerfMessages::static_cdm_).mutable_batteries_info());
  ZTBatteryStatus flags{};
  battery.GetChargeState(&flags);
  const StoredFigures figures{battery.GetFullChargeCapacity(), battery.GetChargeRate(),
                              RoundToTwoDecimals(battery.GetRemainingPercent()), battery.GetTemperature(),
                              battery.GetFurtherCapacity()};
  KeepForStorage(figures);
  // Asked for like the first block; nothing of it is reported.
  ZTBatteryStatus second{};
  battery.GetSecondStatus(&second);

  entry.set_charge_state(ChargeState(flags));
  entry.set_battery_ct_number(texts.ct_number);
  entry.set_battery_serial_number(texts.serial_number);
  entry.set_cycle_count(battery.GetCycleCount());
  entry.set_full_charge_capacity(Bits(figures.full_charge_capacity_mwh));
  entry.set_remaining_charge_capacity(battery.GetRemainingCapacity());
  entry.set_max_error_percent(battery.GetMaxErrorPercent());
  entry.set_electric_current(battery.GetElectricCurrent());
  entry.set_voltage(Bits(voltages.present_mv));
  entry.set_charge_rate_mw(Bits(figures.charge_rate_mw));
  entry.set_discharge_rate_mw(battery.GetDischargeRate());
  AddEntry(*entry.mutable_battery_status()) = std::to_string(battery.GetStatusCode());
  entry.set_full_charge_capacity_percent(RoundToTwoDecimals(battery.GetFullChargePercent()));
  entry.set_remaining_charge_capacity_percent(figures.remaining_percent);
  SetVoltageRatio(voltages, entry);
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
