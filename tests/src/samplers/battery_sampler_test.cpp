#include <limits>

#include "samplers/battery_info_msg.h"
#include "support/collector_fixture.h"
#include "support/sampler_test.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo_BatteryInfo;

constexpr std::uint8_t kCharging = 8;

simulation::Battery ExampleBattery() {
  simulation::Battery battery;
  battery.serial_number = "01234";
  battery.ct_number = "6QZZX0ABCDEF12";
  battery.design_voltage_mv = 11550;
  battery.further_capacity_mwh = 52480;
  battery.full_charge_capacity_mwh = 49120;
  battery.full_charge_percent = 93.5976F;
  battery.remaining_capacity_mwh = 38375;
  battery.remaining_percent = 78.125F;
  battery.max_error_percent = 4;
  battery.cycle_count = 217;
  battery.temperature_celsius = 31;
  battery.voltage_mv = 12252;
  battery.electric_current = 1530;
  battery.status_code = 192;
  battery.charge_rate_mw = 18744;
  battery.discharge_rate_mw = 6200;
  return battery;
}

class BatterySamplerTest : public SamplerTest {
 protected:
  BatterySamplerTest() {
    machine_.battery_flag = kCharging;
    machine_.batteries = {ExampleBattery()};
  }

  /// The battery that the machine has alone, unless the test adds another one.
  simulation::Battery& Battery() { return *machine_.batteries[0]; }

  /// Samples the machine.
  void Sample() { Populate<BatteryInfoMsg>(); }

  /// The entries of the shared record.
  static const auto& Entries() { return Hardware().batteries_info(); }

  /// Samples the machine; the only entry.
  const PcLogPerformanceSamplesAsCDM_HwInfo_BatteryInfo& SampleOne() {
    Sample();
    EXPECT_EQ(Entries().size(), 1);
    return Entries()[0];
  }

  static void ExpectNothingSampled() {
    EXPECT_FALSE(PerfMessages::static_cdm_->has_hw_info());
    EXPECT_EQ(PerfMessages::amd_pmf_->ByteSizeLong(), 0U);
    EXPECT_EQ(PerfMessages::thermal_->ByteSizeLong(), 0U);
  }
};

TEST_F(BatterySamplerTest, AnEntryHasEveryFigureOfTheBattery) {
  const auto& entry = SampleOne();
  EXPECT_EQ(entry.battery_serial_number(), "01234");
  EXPECT_EQ(entry.battery_ct_number(), "6QZZX0ABCDEF12");
  EXPECT_EQ(entry.charge_state(), "charging");
  EXPECT_EQ(entry.cycle_count(), 217U);
  EXPECT_EQ(entry.full_charge_capacity(), 49120U);
  EXPECT_EQ(entry.remaining_charge_capacity(), 38375U);
  EXPECT_EQ(entry.max_error_percent(), 4U);
  EXPECT_EQ(entry.electric_current(), 1530U);
  EXPECT_EQ(entry.voltage(), 12252U);
  EXPECT_EQ(entry.charge_rate_mw(), 18744U);
  EXPECT_EQ(entry.discharge_rate_mw(), 6200U);
  EXPECT_THAT(entry.battery_status(), testing::ElementsAre("192"));
  EXPECT_EQ(entry.full_charge_capacity_percent(), 93.6F);
  EXPECT_EQ(entry.remaining_charge_capacity_percent(), 78.13F);
  EXPECT_EQ(entry.voltage_percent(), 1.06F);
}

TEST_F(BatterySamplerTest, TheStorageRecordsHaveTheBatterysFigures) {
  Sample();
  EXPECT_EQ(PerfMessages::amd_pmf_->battery_further_capacity_mwh(), 52480);
  EXPECT_EQ(PerfMessages::amd_pmf_->battery_full_charge_capacity_mwh(), 49120);
  EXPECT_EQ(PerfMessages::amd_pmf_->battery_charge_rate_mw(), 18744);
  EXPECT_EQ(PerfMessages::amd_pmf_->battery_remaining_capacity_percent(), 78U);
  EXPECT_EQ(PerfMessages::thermal_->battery_temperature(), 31);
}

TEST_F(BatterySamplerTest, TheFlagsOfNoBatteryAndOfAnUnknownStatusAddNothing) {
  for (const std::uint8_t flag : {std::uint8_t{128}, std::uint8_t{255}}) {
    machine_.battery_flag = flag;
    Sample();
    ExpectNothingSampled();
  }
}

TEST_F(BatterySamplerTest, APowerStatusThatCannotBeReadAddsNothing) {
  machine_.battery_flag.reset();
  Sample();
  ExpectNothingSampled();
}

TEST_F(BatterySamplerTest, EveryOtherFlagMeansABattery) {
  for (const int flag : {0, 1, 2, 4, 8, 9, 127, 129, 136, 254}) {
    machine_.battery_flag = static_cast<std::uint8_t>(flag);
    Sample();
    EXPECT_EQ(Entries().size(), 1) << "flag " << flag;
    PerfMessages::static_cdm_->Clear();
  }
}

TEST_F(BatterySamplerTest, AFlagWithoutBatteriesAddsNothing) {
  machine_.batteries.clear();
  Sample();
  ExpectNothingSampled();
}

TEST_F(BatterySamplerTest, GapsAtBothIndicesAddNothing) {
  machine_.batteries = {std::nullopt, std::nullopt, ExampleBattery()};
  Sample();
  ExpectNothingSampled();
}

TEST_F(BatterySamplerTest, ABatteryBehindAGapIsAdded) {
  machine_.batteries = {std::nullopt, ExampleBattery()};
  EXPECT_EQ(SampleOne().battery_serial_number(), "01234");
}

TEST_F(BatterySamplerTest, TwoBatteriesAreAddedInTheirOrder) {
  machine_.batteries.push_back(ExampleBattery());
  machine_.batteries[1]->serial_number = "56789";
  Sample();
  ASSERT_EQ(Entries().size(), 2);
  EXPECT_EQ(Entries()[0].battery_serial_number(), "01234");
  EXPECT_EQ(Entries()[1].battery_serial_number(), "56789");
}

TEST_F(BatterySamplerTest, AThirdBatteryIsNotAskedFor) {
  machine_.batteries = {ExampleBattery(), ExampleBattery(), ExampleBattery()};
  machine_.batteries[2]->temperature_celsius = 99;
  Sample();
  EXPECT_EQ(Entries().size(), 2);
  EXPECT_EQ(PerfMessages::thermal_->battery_temperature(), 31);
}

TEST_F(BatterySamplerTest, TheLastBatteryWinsInTheStorageRecords) {
  machine_.batteries.push_back(simulation::Battery());
  Sample();
  EXPECT_EQ(PerfMessages::amd_pmf_->battery_further_capacity_mwh(), 0);
  EXPECT_EQ(PerfMessages::amd_pmf_->battery_full_charge_capacity_mwh(), 0);
  EXPECT_EQ(PerfMessages::amd_pmf_->battery_charge_rate_mw(), 0);
  EXPECT_EQ(PerfMessages::amd_pmf_->battery_remaining_capacity_percent(), 0U);
  EXPECT_TRUE(PerfMessages::thermal_->has_battery_temperature());
  EXPECT_EQ(PerfMessages::thermal_->battery_temperature(), 0);
}

TEST_F(BatterySamplerTest, StorageFiguresKeepTheirSign) {
  Battery().further_capacity_mwh = -1;
  Battery().full_charge_capacity_mwh = std::numeric_limits<std::int32_t>::min();
  Battery().charge_rate_mw = -2;
  Battery().temperature_celsius = -3;
  Sample();
  EXPECT_EQ(PerfMessages::amd_pmf_->battery_further_capacity_mwh(), -1);
  EXPECT_EQ(PerfMessages::amd_pmf_->battery_full_charge_capacity_mwh(), -2'147'483'648LL);
  EXPECT_EQ(PerfMessages::amd_pmf_->battery_charge_rate_mw(), -2);
  EXPECT_EQ(PerfMessages::thermal_->battery_temperature(), -3);
}

TEST_F(BatterySamplerTest, NegativeFiguresKeepTheirBitsInTheEntry) {
  Battery().full_charge_capacity_mwh = -1;
  Battery().voltage_mv = -2;
  Battery().charge_rate_mw = -3;
  const auto& entry = SampleOne();
  EXPECT_EQ(entry.full_charge_capacity(), 4'294'967'295U);
  EXPECT_EQ(entry.voltage(), 4'294'967'294U);
  EXPECT_EQ(entry.charge_rate_mw(), 4'294'967'293U);
}

TEST_F(BatterySamplerTest, HalvesAreRoundedAwayFromZeroInSinglePrecision) {
  Battery().full_charge_percent = 75.405F;
  Battery().remaining_percent = 78.125F;
  const auto& entry = SampleOne();
  EXPECT_EQ(entry.full_charge_capacity_percent(), 75.41F);
  EXPECT_EQ(entry.remaining_charge_capacity_percent(), 78.13F);
}

TEST_F(BatterySamplerTest, NegativePercentagesAreRoundedAwayFromZeroToo) {
  Battery().full_charge_percent = -78.125F;
  EXPECT_EQ(SampleOne().full_charge_capacity_percent(), -78.13F);
}

TEST_F(BatterySamplerTest, TheStoragePercentageIsCutOffTheRoundedOne) {
  Battery().remaining_percent = 99.994F;
  Sample();
  EXPECT_EQ(PerfMessages::amd_pmf_->battery_remaining_capacity_percent(), 99U);
  Battery().remaining_percent = 99.996F;
  Sample();
  EXPECT_EQ(PerfMessages::amd_pmf_->battery_remaining_capacity_percent(), 100U);
}

TEST_F(BatterySamplerTest, APercentageThatIsNoNumberHasADefinedStorageFigure) {
  Battery().remaining_percent = std::numeric_limits<float>::quiet_NaN();
  Sample();
  EXPECT_EQ(PerfMessages::amd_pmf_->battery_remaining_capacity_percent(), 0x8000000000000000U);
  Battery().remaining_percent = -1.5F;
  Sample();
  EXPECT_EQ(PerfMessages::amd_pmf_->battery_remaining_capacity_percent(), 0xFFFFFFFFFFFFFFFFU);
}

TEST_F(BatterySamplerTest, WithoutADesignVoltageOnlyTheRatioIsUnset) {
  for (const std::int32_t voltage : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
    Battery().design_voltage_mv = voltage;
    const auto& entry = SampleOne();
    const auto* fields = entry.GetDescriptor();
    for (int i = 0; i < fields->field_count(); ++i) {
      const auto* field = fields->field(i);
      if (field->is_repeated()) continue;
      EXPECT_EQ(entry.GetReflection()->HasField(entry, field), field->name() != "voltage_percent") << field->name();
    }
    EXPECT_THAT(entry.battery_status(), testing::ElementsAre("192"));
    PerfMessages::static_cdm_->Clear();
  }
}

TEST_F(BatterySamplerTest, AVoltageOfZeroIsARatioOfZero) {
  Battery().voltage_mv = 0;
  const auto& entry = SampleOne();
  EXPECT_TRUE(entry.has_voltage_percent());
  EXPECT_EQ(entry.voltage_percent(), 0.0F);
}

TEST_F(BatterySamplerTest, TheFlagOfMainsThatDoNotChargeWinsOverDischarging) {
  Battery().on_ac_not_charging = true;
  Battery().discharging = true;
  EXPECT_EQ(SampleOne().charge_state(), "onACNotCharging");
}

TEST_F(BatterySamplerTest, EachFlagAloneHasItsText) {
  Battery().on_ac_not_charging = true;
  EXPECT_EQ(SampleOne().charge_state(), "onACNotCharging");
  PerfMessages::static_cdm_->Clear();
  Battery().on_ac_not_charging = false;
  Battery().discharging = true;
  EXPECT_EQ(SampleOne().charge_state(), "discharging");
}

TEST_F(BatterySamplerTest, TextsAreCutTo32Bytes) {
  Battery().serial_number = std::string(40, 'S');
  Battery().ct_number = std::string(33, 'C');
  const auto& entry = SampleOne();
  EXPECT_EQ(entry.battery_serial_number(), std::string(32, 'S'));
  EXPECT_EQ(entry.battery_ct_number(), std::string(32, 'C'));
}

TEST_F(BatterySamplerTest, EmptyTextsAreUnknown) {
  Battery().serial_number.clear();
  Battery().ct_number.clear();
  const auto& entry = SampleOne();
  EXPECT_EQ(entry.battery_serial_number(), "unknown");
  EXPECT_EQ(entry.battery_ct_number(), "unknown");
}

TEST_F(BatterySamplerTest, ANegativeStatusCodeKeepsItsSign) {
  Battery().status_code = -7;
  EXPECT_THAT(SampleOne().battery_status(), testing::ElementsAre("-7"));
}

TEST_F(BatterySamplerTest, NothingIsKeptBetweenPasses) {
  Sample();
  machine_.batteries = {ExampleBattery()};
  Battery().serial_number = "56789";
  Sample();
  ASSERT_EQ(Entries().size(), 2);
  EXPECT_EQ(Entries()[1].battery_serial_number(), "56789");
}

TEST_F(BatterySamplerTest, AsksNothingOfWmi) {
  Sample();
  EXPECT_THAT(simulation::RecordedQueries(), testing::IsEmpty());
}

class BatteryCycleTest : public CollectorTest {};

TEST_F(BatteryCycleTest, TheBatteryComesWithTheCyclesRecords) {
  simulation::Machine machine;
  machine.battery_flag = kCharging;
  machine.batteries = {ExampleBattery()};
  simulation::UseMachine(machine);
  Execute(50);
  ASSERT_EQ(OnlySent().hw_info().batteries_info_size(), 1);
  EXPECT_EQ(OnlySent().hw_info().batteries_info(0).battery_serial_number(), "01234");
  ASSERT_EQ(sink_->stored.size(), 1U);
  EXPECT_EQ(sink_->stored[0].battery_full_charge_capacity_mwh(), 49120);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
