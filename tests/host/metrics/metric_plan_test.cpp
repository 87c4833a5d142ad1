#include "host/metrics/metric_plan.h"

#include <gmock/gmock.h>

#include <set>

#include "agreed_metrics.h"
#include "contract_annotations.pb.h"
#include "device_performance_storage.pb.h"
#include "host/metrics/base_unit.h"
#include "host/metrics/newest_records.h"
#include "performance_samples_upload.pb.h"
#include "tests/host/metrics/metric_rows.h"

namespace zt::telemetry::host {
namespace {

using contract::storage::device_performance::AmdPmfSamples;
using contract::upload::log::PcLogPerformanceSamplesAsCDM;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

std::string MetricsOf(const google::protobuf::Message& record) {
  OpenMetrics metrics;
  MetricPlan(*record.GetDescriptor(), ContractComments()).Add(record, metrics);
  return metrics.Text();
}

void CollectUnits(const google::protobuf::Descriptor& message, std::set<std::string>& units) {
  for (int i = 0; i < message.field_count(); ++i) {
    const auto& field = *message.field(i);
    units.insert(field.options().GetExtension(contract::shown).unit());
    if (field.message_type() != nullptr) CollectUnits(*field.message_type(), units);
  }
}

TEST(MetricPlanTest, EveryUnitOfTheContractHasABaseUnit) {
  std::set<std::string> units;
  CollectUnits(*PcLogPerformanceSamplesAsCDM::descriptor(), units);
  CollectUnits(*AmdPmfSamples::descriptor(), units);
  units.erase("");
  EXPECT_GE(units.size(), 15U);
  for (const std::string& unit : units) EXPECT_TRUE(BaseUnitOf(unit).has_value()) << unit;
}

TEST(MetricPlanTest, EveryMetricHasAHelpAndANameOfItsOwn) {
  std::set<std::string> names;
  for (const MetricFamily& family : RecordMetricFamilies()) {
    EXPECT_TRUE(names.insert(family.name).second) << family.name;
    EXPECT_GT(family.help.size(), 10U) << family.name;
  }
}

TEST(MetricPlanTest, ANameEndsWithItsUnit) {
  for (const MetricFamily& family : RecordMetricFamilies()) {
    const std::string end = family.unit.empty() ? "" : "_" + family.unit;
    EXPECT_THAT(family.name, testing::EndsWith(end));
  }
}

// Dashboards and alerts know metrics by their names: one that comes, goes or changes is a line of docs/metrics.md.
TEST(MetricPlanTest, TheMetricsAreTheAgreedOnes) {
  const auto lines = [](const std::vector<std::string>& rows) {
    std::string text;
    for (const std::string& row : rows) text += row + "\n";
    return text;
  };
  EXPECT_EQ(lines(MetricRows()), lines(zt::tests::AgreedMetrics())) << "scripts/contract writes what is new";
}

TEST(MetricPlanTest, TheHelpIsTheCommentOfTheContract) {
  const auto& field =
      *PcLogPerformanceSamplesAsCDM::HwInfo::BatteryInfo::descriptor()->FindFieldByName("remaining_charge_capacity");
  EXPECT_EQ(ContractComments().Of(field), "What the battery holds now.");
}

TEST(MetricPlanTest, ACommentOfSeveralLinesIsOneLine) {
  const auto& field = *PcLogPerformanceSamplesAsCDM::descriptor()->FindFieldByName("local_time");
  EXPECT_EQ(ContractComments().Of(field),
            "Local wall-clock time of the sending, to the second, followed by \".000Z\" although it is not UTC.");
}

TEST(MetricPlanTest, ABatteryIsToldInBaseUnitsUnderItsSerialNumber) {
  PcLogPerformanceSamplesAsCDM record;
  auto& battery = *record.mutable_hw_info()->add_batteries_info();
  battery.set_battery_serial_number("00042");
  battery.set_charge_rate_mw(22'300);
  battery.set_full_charge_capacity(49'210);
  battery.set_voltage(12'252);
  battery.set_remaining_charge_capacity_percent(75.41F);
  EXPECT_THAT(MetricsOf(record), AllOf(HasSubstr("\nzt_batteries_charging_watts{serial_number=\"00042\"} 22.3\n"),
                                       HasSubstr("\nzt_batteries_full_joules{serial_number=\"00042\"} 177156\n"),
                                       HasSubstr("\nzt_batteries_voltage_volts{serial_number=\"00042\"} 12.252\n"),
                                       HasSubstr("\nzt_batteries_charge_ratio{serial_number=\"00042\"} 0.7541\n")));
}

TEST(MetricPlanTest, TheTextsOfAnEntryAreLabelsOfOneMetric) {
  PcLogPerformanceSamplesAsCDM record;
  auto& battery = *record.mutable_hw_info()->add_batteries_info();
  battery.set_battery_serial_number("00042");
  battery.add_battery_status("192");
  battery.set_charge_state("charging");
  EXPECT_THAT(MetricsOf(record),
              HasSubstr("\nzt_batteries_info{serial_number=\"00042\",state=\"charging\",status=\"192\"} 1\n"));
}

TEST(MetricPlanTest, WhatIsNotSetIsNotTold) {
  PcLogPerformanceSamplesAsCDM record;
  record.mutable_hw_info()->add_batteries_info()->set_cycle_count(0);
  const std::string metrics = MetricsOf(record);
  EXPECT_THAT(metrics, HasSubstr("\nzt_batteries_cycles 0\n"));
  EXPECT_THAT(metrics, Not(AnyOf(HasSubstr("volts"), HasSubstr("info"))));
}

TEST(MetricPlanTest, ANumberThatTellsEntriesApartIsALabel) {
  PcLogPerformanceSamplesAsCDM record;
  auto& fan = *record.mutable_hw_info()->add_fans_info();
  fan.set_fan_id(2);
  auto& average = *fan.add_fan_statistics_info();
  average.set_fan_stat_name("tach_current");
  average.set_fan_stat_value(2428);
  EXPECT_THAT(MetricsOf(record), HasSubstr("\nzt_fans_average{fan=\"2\",figure=\"tach_current\"} 2428\n"));
}

TEST(MetricPlanTest, AListInASectionHasTheLabelsOfBoth) {
  PcLogPerformanceSamplesAsCDM record;
  auto& npu = *record.mutable_hw_info()->add_npus_info();
  npu.set_device_id("PCI\\VEN_8086");
  auto& sensor = *npu.add_temperature_sensors_info();
  sensor.set_sensor_name("Temp_0");
  sensor.set_temperature_celsius(41);
  EXPECT_THAT(MetricsOf(record),
              HasSubstr("\nzt_npus_temperature_celsius{device=\"PCI\\\\VEN_8086\",sensor=\"Temp_0\"} 41\n"));
}

TEST(MetricPlanTest, WiFiProfilesAreToldInWords) {
  PcLogPerformanceSamplesAsCDM record;
  auto& interface = *record.mutable_hw_info()->mutable_network_info()->add_interfaces_info();
  interface.set_device_id("{A}");
  auto& profile = *interface.add_w_lan_profiles();
  profile.set_w_lan_profile_name("0A0B");
  profile.set_w_lan_profile_encryption("AES");
  EXPECT_THAT(
      MetricsOf(record),
      HasSubstr("\nzt_network_interfaces_wi_fi_profiles_info{interface=\"{A}\",name=\"0A0B\",encryption=\"AES\"} 1\n"));
}

TEST(MetricPlanTest, ASignalIsTheSignedNumberThatItsBitsAre) {
  PcLogPerformanceSamplesAsCDM record;
  record.mutable_hw_info()->mutable_network_info()->add_interfaces_info()->set_signal_strength(
      static_cast<std::uint32_t>(-61));
  EXPECT_THAT(MetricsOf(record), HasSubstr("\nzt_network_interfaces_signal_dbm -61\n"));
}

TEST(MetricPlanTest, AFlagIsOneOrZero) {
  PcLogPerformanceSamplesAsCDM record;
  record.mutable_hw_info()->mutable_network_info()->set_has_network_access(true);
  record.mutable_hw_info()->mutable_network_info()->set_is_vpn_connected(false);
  EXPECT_THAT(MetricsOf(record),
              AllOf(HasSubstr("\nzt_network_network_access 1\n"), HasSubstr("\nzt_network_vpn 0\n")));
}

TEST(MetricPlanTest, AFigureThatAnotherOneTellsIsLeftOut) {
  PcLogPerformanceSamplesAsCDM record;
  auto& use = *record.mutable_operating_system_info()
                   ->add_resource_intensive_processes_info()
                   ->mutable_resource_utilization_info();
  use.set_io_reads(40'960);
  use.set_io_reads_kb(40);
  const std::string metrics = MetricsOf(record);
  EXPECT_THAT(metrics, HasSubstr("\nzt_processes_reads 40960\n"));
  EXPECT_THAT(metrics, Not(HasSubstr("1024")));
}

TEST(MetricPlanTest, TheUnitIsThatOfTheFigureWhateverTheFieldsNameSays) {
  PcLogPerformanceSamplesAsCDM record;
  auto& npu = *record.mutable_hw_info()->add_npus_info();
  npu.set_npus_clock_mhz(1.85e9F);
  npu.set_memory_bandwidth_gb(16);
  auto& session = *record.mutable_operating_system_info()->mutable_operating_session_info();
  session.set_max_user_input_delay_ms(10);
  session.set_time_since_last_boot_minutes(319);
  EXPECT_THAT(MetricsOf(record),
              AllOf(HasSubstr("\nzt_npus_clock_hertz 1850000000\n"), HasSubstr("\nzt_npus_memory_bytes 17179869184\n"),
                    HasSubstr("\nzt_session_touch_contacts 10\n"),
                    HasSubstr("\nzt_session_since_the_last_start_seconds 19140\n")));
}

TEST(MetricPlanTest, AHostileProcessNameStaysInItsLabel) {
  PcLogPerformanceSamplesAsCDM record;
  auto& process = *record.mutable_operating_system_info()->add_resource_intensive_processes_info();
  process.set_executable_file_id("e\"} 1\n# EOF\\\u2028\xC3");
  process.set_base_priority(8);
  EXPECT_THAT(MetricsOf(record),
              HasSubstr("\nzt_processes_priority{process=\"e\\\"} 1\\n# EOF\\\\\u2028\uFFFD\"} 8\n"));
}

}  // namespace
}  // namespace zt::telemetry::host
