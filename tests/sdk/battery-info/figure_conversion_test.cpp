#include "figure_conversion.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace zt::shared::battery {
namespace {

using smbios::TypePortableBattery;

BatteryReading Discharging() {
  BatteryReading reading;
  reading.information.capabilities = protocol::kSystemBattery;
  reading.information.designed_capacity = 50'000;
  reading.information.full_charged_capacity = 45'000;
  reading.information.cycle_count = 123;
  reading.status.power_state = protocol::kDischarging;
  reading.status.capacity = 30'000;
  reading.status.voltage = 12'000;
  reading.status.rate = -6'000;
  reading.temperature_tenth_kelvin = 2982;
  reading.serial_number = "01234";
  reading.unique_id = "01234MakerRE03045XL";
  reading.device_name = "RE03045XL";
  return reading;
}

BatteryReading InState(std::uint32_t power_state) {
  BatteryReading reading = Discharging();
  reading.status.power_state = power_state;
  return reading;
}

BatteryReading AtRate(std::int32_t rate) {
  BatteryReading reading = Discharging();
  reading.status.rate = rate;
  return reading;
}

std::int32_t CelsiusOf(std::optional<std::uint32_t> tenth_kelvin) {
  BatteryReading reading = Discharging();
  reading.temperature_tenth_kelvin = tenth_kelvin;
  return FiguresOf(reading).temperature_celsius;
}

TEST(FigureConversionTest, HaveTheUnitsOfTheLibrary) {
  const BatteryFigures figures = FiguresOf(Discharging());
  EXPECT_EQ(figures.serial_number, "01234");
  EXPECT_EQ(figures.ct_number, "");
  EXPECT_EQ(figures.design_voltage_mv, 0);
  EXPECT_EQ(figures.further_capacity_mwh, 50'000);
  EXPECT_EQ(figures.full_charge_capacity_mwh, 45'000);
  EXPECT_FLOAT_EQ(figures.full_charge_percent, 90.0F);
  EXPECT_EQ(figures.remaining_capacity_mwh, 30'000U);
  EXPECT_FLOAT_EQ(figures.remaining_percent, 66.666667F);
  EXPECT_EQ(figures.max_error_percent, 0U);
  EXPECT_EQ(figures.cycle_count, 123U);
  EXPECT_EQ(figures.temperature_celsius, 25);
  EXPECT_EQ(figures.voltage_mv, 12'000);
  EXPECT_EQ(figures.electric_current_ma, 500U);
  EXPECT_EQ(figures.status_code, 192);
  EXPECT_FALSE(figures.on_ac_not_charging);
  EXPECT_TRUE(figures.discharging);
  EXPECT_EQ(figures.charge_rate_mw, 0);
  EXPECT_EQ(figures.discharge_rate_mw, 6'000U);
}

TEST(FigureConversionTest, TakeTheUniqueIdOfABatteryWithoutASerialNumber) {
  BatteryReading reading = Discharging();
  reading.serial_number.clear();
  EXPECT_EQ(FiguresOf(reading).serial_number, "01234MakerRE03045XL");
}

TEST(FigureConversionTest, ARateIntoTheBatteryIsAChargeRate) {
  const BatteryFigures figures = FiguresOf(AtRate(24'000));
  EXPECT_EQ(figures.charge_rate_mw, 24'000);
  EXPECT_EQ(figures.discharge_rate_mw, 0U);
  EXPECT_EQ(figures.electric_current_ma, 2'000U);
}

TEST(FigureConversionTest, AnUnknownRateIsZeroBothWays) {
  const BatteryFigures figures = FiguresOf(AtRate(protocol::kUnknownRate));
  EXPECT_EQ(figures.charge_rate_mw, 0);
  EXPECT_EQ(figures.discharge_rate_mw, 0U);
  EXPECT_EQ(figures.electric_current_ma, 0U);
}

TEST(FigureConversionTest, TheLargestRatesAreKept) {
  EXPECT_EQ(FiguresOf(AtRate(std::numeric_limits<std::int32_t>::max())).charge_rate_mw, 2'147'483'647);
  EXPECT_EQ(FiguresOf(AtRate(-std::numeric_limits<std::int32_t>::max())).discharge_rate_mw, 2'147'483'647U);
}

TEST(FigureConversionTest, ACurrentBeyondItsFieldIsTheLargestThatFits) {
  BatteryReading reading = AtRate(std::numeric_limits<std::int32_t>::max());
  reading.status.voltage = 1;
  EXPECT_EQ(FiguresOf(reading).electric_current_ma, 4'294'967'295U);
}

TEST(FigureConversionTest, AnUnknownVoltageIsZeroAndGivesNoCurrent) {
  BatteryReading reading = Discharging();
  for (const std::uint32_t voltage : {protocol::kUnknownVoltage, 0x80000000U, 0U}) {
    reading.status.voltage = voltage;
    EXPECT_EQ(FiguresOf(reading).voltage_mv, 0);
    EXPECT_EQ(FiguresOf(reading).electric_current_ma, 0U);
    EXPECT_EQ(FiguresOf(reading).discharge_rate_mw, 6'000U);
  }
}

TEST(FigureConversionTest, AnUnknownRemainderIsZeroCapacityAndZeroPercent) {
  BatteryReading reading = Discharging();
  reading.status.capacity = protocol::kUnknownCapacity;
  const BatteryFigures figures = FiguresOf(reading);
  EXPECT_EQ(figures.remaining_capacity_mwh, 0U);
  EXPECT_EQ(figures.remaining_percent, 0.0F);
  EXPECT_EQ(figures.status_code & 0x20, 0) << "not taken for a full battery";
}

TEST(FigureConversionTest, AnUnknownFullChargeGivesNeitherPercentage) {
  BatteryReading reading = Discharging();
  reading.information.full_charged_capacity = protocol::kUnknownCapacity;
  const BatteryFigures figures = FiguresOf(reading);
  EXPECT_EQ(figures.full_charge_capacity_mwh, 0);
  EXPECT_EQ(figures.full_charge_percent, 0.0F);
  EXPECT_EQ(figures.remaining_percent, 0.0F);
  EXPECT_EQ(figures.remaining_capacity_mwh, 30'000U);
}

TEST(FigureConversionTest, AnUnknownDesignCapacityGivesNoHealth) {
  BatteryReading reading = Discharging();
  reading.information.designed_capacity = protocol::kUnknownCapacity;
  const BatteryFigures figures = FiguresOf(reading);
  EXPECT_EQ(figures.further_capacity_mwh, 0);
  EXPECT_EQ(figures.full_charge_percent, 0.0F);
  EXPECT_FLOAT_EQ(figures.remaining_percent, 66.666667F);
}

TEST(FigureConversionTest, ACapacityOfZeroIsNotDividedBy) {
  BatteryReading reading = Discharging();
  reading.information.full_charged_capacity = 0;
  reading.information.designed_capacity = 0;
  const BatteryFigures figures = FiguresOf(reading);
  EXPECT_EQ(figures.full_charge_percent, 0.0F);
  EXPECT_EQ(figures.remaining_percent, 0.0F);
}

TEST(FigureConversionTest, UnitsOfTheDriversOwnAreNoMilliwattHoursButHaveTrueRatios) {
  BatteryReading reading = Discharging();
  reading.information.capabilities |= protocol::kCapacityRelative;
  reading.information.designed_capacity = 100;
  reading.information.full_charged_capacity = 100;
  reading.status.capacity = 64;
  reading.status.rate = -10;
  const BatteryFigures figures = FiguresOf(reading);
  EXPECT_EQ(figures.further_capacity_mwh, 0);
  EXPECT_EQ(figures.full_charge_capacity_mwh, 0);
  EXPECT_EQ(figures.remaining_capacity_mwh, 0U);
  EXPECT_EQ(figures.charge_rate_mw, 0);
  EXPECT_EQ(figures.discharge_rate_mw, 0U);
  EXPECT_EQ(figures.electric_current_ma, 0U);
  EXPECT_FLOAT_EQ(figures.full_charge_percent, 100.0F);
  EXPECT_FLOAT_EQ(figures.remaining_percent, 64.0F);
  EXPECT_EQ(figures.voltage_mv, 12'000);
}

TEST(FigureConversionTest, TheTemperatureIsTheNearestWholeDegree) {
  EXPECT_EQ(CelsiusOf(2986), 25);   // 25.45
  EXPECT_EQ(CelsiusOf(2987), 26);   // 25.55
  EXPECT_EQ(CelsiusOf(2732), 0);    // 0.05
  EXPECT_EQ(CelsiusOf(2632), -10);  // -9.95
  EXPECT_EQ(CelsiusOf(2636), -10);  // -9.55
  EXPECT_EQ(CelsiusOf(2637), -9);   // -9.45
}

TEST(FigureConversionTest, ATemperatureThatIsNotKnownIsZero) {
  EXPECT_EQ(CelsiusOf(std::nullopt), 0);
  EXPECT_EQ(CelsiusOf(0), 0);
  EXPECT_EQ(CelsiusOf(10'001), 0);
  EXPECT_EQ(CelsiusOf(0xFFFFFFFF), 0);
}

TEST(FigureConversionTest, ChargingSetsNoFlag) {
  const BatteryFigures figures = FiguresOf(InState(protocol::kPowerOnLine | protocol::kCharging));
  EXPECT_FALSE(figures.discharging);
  EXPECT_FALSE(figures.on_ac_not_charging);
  EXPECT_EQ(figures.status_code, 128);
}

TEST(FigureConversionTest, MainsThatDoNotChargeAreToldApart) {
  const BatteryFigures figures = FiguresOf(InState(protocol::kPowerOnLine));
  EXPECT_FALSE(figures.discharging);
  EXPECT_TRUE(figures.on_ac_not_charging);
  EXPECT_EQ(figures.status_code, 192);
}

TEST(FigureConversionTest, ABatteryThatDischargesOnMainsDischarges) {
  const BatteryFigures figures = FiguresOf(InState(protocol::kPowerOnLine | protocol::kDischarging));
  EXPECT_TRUE(figures.discharging);
  EXPECT_FALSE(figures.on_ac_not_charging);
}

TEST(FigureConversionTest, ABatteryAtRestBesideAnotherOneCountsAsDischarging) {
  const BatteryFigures figures = FiguresOf(InState(0));
  EXPECT_TRUE(figures.discharging);
  EXPECT_FALSE(figures.on_ac_not_charging);
  EXPECT_EQ(figures.status_code, 192);
}

TEST(FigureConversionTest, TheStatusCodeTellsAFullBattery) {
  BatteryReading reading = InState(protocol::kPowerOnLine);
  reading.status.capacity = 45'000;
  EXPECT_EQ(FiguresOf(reading).status_code, 192 + 32);
}

TEST(FigureConversionTest, TheStatusCodeTellsACriticalBattery) {
  EXPECT_EQ(FiguresOf(InState(protocol::kDischarging | protocol::kCritical)).status_code, 192 + 512);
}

TEST(PowersTheMachineTest, OnlyASystemBatteryThatIsNoUps) {
  BatteryReading reading = Discharging();
  EXPECT_TRUE(PowersTheMachine(reading));
  reading.information.capabilities = protocol::kSystemBattery | protocol::kCapacityRelative;
  EXPECT_TRUE(PowersTheMachine(reading));
  reading.information.capabilities = protocol::kSystemBattery | protocol::kShortTerm;
  EXPECT_FALSE(PowersTheMachine(reading)) << "a UPS";
  reading.information.capabilities = protocol::kCapacityRelative;
  EXPECT_FALSE(PowersTheMachine(reading)) << "the battery of a mouse";
}

TypePortableBattery Structure(std::string serial, std::string device, std::uint16_t voltage) {
  return {std::move(serial), std::move(device), voltage, std::uint8_t{5}};
}

BatteryReading Named(const std::string& serial, const std::string& device) {
  BatteryReading reading = Discharging();
  reading.serial_number = serial;
  reading.device_name = device;
  return reading;
}

TEST(FirmwareBatteryTest, GivesTheDesignVoltageAndTheLargestError) {
  const auto figures = FiguresOf(std::vector{Discharging()}, {Structure("01234", "RE03045XL", 11'550)});
  ASSERT_EQ(figures.size(), 1U);
  EXPECT_EQ(figures[0].design_voltage_mv, 11'550);
  EXPECT_EQ(figures[0].max_error_percent, 5U);
}

TEST(FirmwareBatteryTest, TheSerialNumberFindsTheStructureWhateverItsPlace) {
  const auto figures =
      FiguresOf({Named("A", "same"), Named("B", "same")}, {Structure("B ", "same", 2), Structure("A", "same", 1)});
  ASSERT_EQ(figures.size(), 2U);
  EXPECT_EQ(figures[0].design_voltage_mv, 1);
  EXPECT_EQ(figures[1].design_voltage_mv, 2);
}

TEST(FirmwareBatteryTest, TheDeviceNameFindsItWithoutASerialNumber) {
  const auto figures =
      FiguresOf({Named("", "second"), Named("", "first")}, {Structure("", "first", 1), Structure("", "second ", 2)});
  ASSERT_EQ(figures.size(), 2U);
  EXPECT_EQ(figures[0].design_voltage_mv, 2);
  EXPECT_EQ(figures[1].design_voltage_mv, 1);
}

TEST(FirmwareBatteryTest, TheOnlyOneBelongsToTheOnlyBattery) {
  EXPECT_EQ(FiguresOf({Named("A", "name")}, {Structure("X", "Primary", 7)})[0].design_voltage_mv, 7);
}

TEST(FirmwareBatteryTest, OneThatCannotBeToldApartGivesNothing) {
  EXPECT_EQ(FiguresOf({Named("A", "name")}, {Structure("X", "x", 7), Structure("Y", "y", 8)})[0].design_voltage_mv, 0);
  EXPECT_EQ(FiguresOf({Named("A", "name"), Named("B", "name")}, {Structure("X", "x", 7)})[0].design_voltage_mv, 0);
  EXPECT_EQ(FiguresOf({Named("A", "name")}, {})[0].design_voltage_mv, 0);
}

TEST(FirmwareBatteryTest, WhatTheFirmwareDoesNotKnowIsZero) {
  const auto figures = FiguresOf(std::vector{Discharging()}, {TypePortableBattery{}});
  EXPECT_EQ(figures[0].design_voltage_mv, 0);
  EXPECT_EQ(figures[0].max_error_percent, 0U);
}

}  // namespace
}  // namespace zt::shared::battery
