#include "zt/shared/battery/zt_batteries.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "simulation/machine.h"
#include "support/status_codes.h"

namespace zt::shared::battery {
namespace {

simulation::Battery Example() {
  simulation::Battery battery;
  battery.serial_number = "01234";
  battery.ct_number = "CT-7";
  battery.design_voltage_mv = 1;
  battery.further_capacity_mwh = 2;
  battery.full_charge_capacity_mwh = 3;
  battery.full_charge_percent = 4.5F;
  battery.remaining_capacity_mwh = 5;
  battery.remaining_percent = 6.5F;
  battery.max_error_percent = 7;
  battery.cycle_count = 8;
  battery.temperature_celsius = -9;
  battery.voltage_mv = 10;
  battery.electric_current = 11;
  battery.status_code = -12;
  battery.discharging = true;
  battery.charge_rate_mw = -13;
  battery.discharge_rate_mw = 14;
  return battery;
}

void UseBatteries(std::vector<std::optional<simulation::Battery>> batteries) {
  simulation::Machine machine;
  machine.batteries = std::move(batteries);
  simulation::UseMachine(machine);
}

TEST(ZtBatteriesTest, TellEveryFigure) {
  UseBatteries({Example()});
  ZTBatteries batteries(true, true, nullptr, nullptr);
  ZTBatteryInfo* battery = batteries.Query(0);
  ASSERT_NE(battery, nullptr);
  EXPECT_STREQ(battery->GetSerialNumber(), "01234");
  EXPECT_STREQ(battery->GetCTNumber(), "CT-7");
  EXPECT_EQ(battery->GetDesignVoltage(), 1);
  EXPECT_EQ(battery->GetFurtherCapacity(), 2);
  EXPECT_EQ(battery->GetFullChargeCapacity(), 3);
  EXPECT_EQ(battery->GetFullChargePercent(), 4.5F);
  EXPECT_EQ(battery->GetRemainingCapacity(), 5U);
  EXPECT_EQ(battery->GetRemainingPercent(), 6.5F);
  EXPECT_EQ(battery->GetMaxErrorPercent(), 7U);
  EXPECT_EQ(battery->GetCycleCount(), 8U);
  EXPECT_EQ(battery->GetTemperature(), -9);
  EXPECT_EQ(battery->GetVoltage(), 10);
  EXPECT_EQ(battery->GetElectricCurrent(), 11U);
  EXPECT_EQ(battery->GetStatusCode(), -12);
  EXPECT_EQ(battery->GetChargeRate(), -13);
  EXPECT_EQ(battery->GetDischargeRate(), 14U);
}

TEST(ZtBatteriesTest, FillBothStatusBlocksWholly) {
  UseBatteries({Example()});
  ZTBatteries batteries(true, true, nullptr, nullptr);
  ZTBatteryInfo* battery = batteries.Query(0);
  ASSERT_NE(battery, nullptr);
  std::array<ZTBatteryStatus, 2> blocks;
  std::memset(blocks.data(), 0xFF, sizeof(blocks));
  battery->GetSecondStatus(&blocks[0]);
  battery->GetChargeState(&blocks[1]);
  for (const ZTBatteryStatus& block : blocks) {
    std::array<unsigned char, sizeof(ZTBatteryStatus)> bytes;
    std::memcpy(bytes.data(), &block, sizeof(block));
    EXPECT_EQ(bytes, (std::array<unsigned char, 11>{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}));
  }
}

TEST(ZtBatteriesTest, AGapAndAnIndexBeyondTheLastAreNull) {
  UseBatteries({std::nullopt, Example()});
  ZTBatteries batteries(true, true, nullptr, nullptr);
  EXPECT_EQ(batteries.Query(0), nullptr);
  EXPECT_NE(batteries.Query(1), nullptr);
  EXPECT_EQ(batteries.Query(2), nullptr);
  EXPECT_EQ(batteries.Query(255), nullptr);
}

TEST(ZtBatteriesTest, AMachineWithoutThemHasNone) {
  UseBatteries({});
  ZTBatteries batteries(true, true, nullptr, nullptr);
  EXPECT_EQ(batteries.Query(0), nullptr);
  EXPECT_EQ(batteries.GetReadError(), 0U);
}

TEST(ZtBatteriesTest, OneThatDoesNotAnswerIsLeftOutAndItsErrorTold) {
  simulation::Battery silent;
  silent.failure = simulation::Failure{1460};
  simulation::Battery refusing;
  refusing.failure = simulation::Failure{tests::kCallDenied};
  UseBatteries({silent, Example(), refusing});
  ZTBatteries batteries(true, true, nullptr, nullptr);
  EXPECT_EQ(batteries.Query(0), nullptr);
  EXPECT_NE(batteries.Query(1), nullptr);
  EXPECT_EQ(batteries.Query(2), nullptr);
  EXPECT_EQ(batteries.GetReadError(), 1460U) << "the first one's";
}

TEST(ZtBatteriesTest, StayAsTheyWereAtConstruction) {
  UseBatteries({Example()});
  ZTBatteries batteries(true, true, nullptr, nullptr);
  UseBatteries({});
  ASSERT_NE(batteries.Query(0), nullptr);
  EXPECT_STREQ(batteries.Query(0)->GetSerialNumber(), "01234");
  EXPECT_EQ(batteries.Query(0), batteries.Query(0));
}

}  // namespace
}  // namespace zt::shared::battery
