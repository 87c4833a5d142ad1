#include "store/thermal_summary.h"

#include <cmath>
#include <stdexcept>

#include "open_collector.h"
#include "simulation/calls.h"
#include "store/sample_database.h"
#include "support/collector_fixture.h"
#include "support/wmi_namespace.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::string TextOf(const google::protobuf::RepeatedPtrField<
                   contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo_Fans_FanStatistics>& statistics) {
  std::string text;
  for (const auto& statistic : statistics) {
    text += statistic.fan_stat_name() + "=" + std::to_string(statistic.fan_stat_value()) + " ";
  }
  return text;
}

class ThermalSummaryTest : public testing::Test {
 protected:
  ThermalSummaryTest() {
    machine_.clock = ExampleClock();
    machine_.smbios_serial_number = "ZT12345678";
    machine_.wmi.classes["Win32_Processor"] = {{{"DeviceID", "CPU0"}, {"LoadPercentage", 12}}};
  }

  /// An hour whose readings are all plain, apart from `changes`; an empty text takes the column away.
  static SummaryRow Hour(const std::map<std::string, std::string>& changes = {}) {
    SummaryRow row = {{"hour_window", "2024-05-01T10:00:00.000Z"},
                      {"cpu_temp_avg", "50.5"},
                      {"ext_sensor_avg", "40.25"},
                      {"loc_sensor_avg", "30.75"},
                      {"fan1_current_tach_speed_avg", "1000.5"},
                      {"fan1_target_tach_speed_avg", "1100.0"},
                      {"fan1_speed_step_avg", "20.5"},
                      {"fan2_current_tach_speed_avg", "2000.0"},
                      {"fan2_target_tach_speed_avg", "2200.0"},
                      {"fan2_speed_step_avg", "25.0"},
                      {"num_samples", "60"}};
    for (const auto& [column, value] : changes) {
      if (value.empty()) {
        row.erase(column);
      } else {
        row[column] = value;
      }
    }
    return row;
  }

  void Upload(std::vector<SummaryRow> rows) {
    simulation::UseMachine(machine_);
    shared::wmi::WMIClient wmi(tests::kWmiNamespace);
    collector_.UploadThermalSamples(&rows, &wmi);
  }

  const contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo& HardwareOf(std::size_t record) const {
    return sink_->sent.at(record).hw_info();
  }

  std::uint32_t CpuTemperature(const std::string& average) {
    sink_->sent.clear();
    Upload({Hour({{"cpu_temp_avg", average}})});
    return HardwareOf(0).cpus_info(0).temperature_sensors_info(0).temperature_celsius();
  }

  simulation::Machine machine_;
  std::shared_ptr<tests::RecordingSink> sink_ = tests::RegisterRecordingSink();
  OpenCollector collector_;
};

TEST_F(ThermalSummaryTest, SendsOneRecordForEachHourInOrder) {
  Upload({Hour(), Hour({{"hour_window", "2024-05-01T11:00:00.000Z"}, {"num_samples", "7"}})});
  ASSERT_THAT(sink_->sent, SizeIs(2));
  EXPECT_EQ(sink_->sent[0].collection_id(), "2024-05-01T10H_ZT12345678-TH");
  EXPECT_EQ(sink_->sent[0].sample_points_actual(), 60U);
  EXPECT_EQ(sink_->sent[1].collection_id(), "2024-05-01T11H_ZT12345678-TH");
  EXPECT_EQ(sink_->sent[1].sample_points_actual(), 7U);
}

TEST_F(ThermalSummaryTest, StampsEachRecordWithThePresentLocalTime) {
  Upload({Hour()});
  EXPECT_EQ(sink_->sent[0].local_time(), "2026-03-07T12:20:42.000Z");
}

TEST_F(ThermalSummaryTest, CutsALongIdAtThirty) {
  machine_.smbios_serial_number = "ZT1234567890123";
  Upload({Hour()});
  EXPECT_EQ(sink_->sent[0].collection_id(), "2024-05-01T10H_ZT1234567890123");
}

TEST_F(ThermalSummaryTest, SaysUnknownSnOnAMachineWithoutSerialNumber) {
  machine_.smbios_serial_number.reset();
  Upload({Hour()});
  EXPECT_EQ(sink_->sent[0].collection_id(), "2024-05-01T10H_UNKNOWN_SN-TH");
}

TEST_F(ThermalSummaryTest, UsesAShortHourWindowWhole) {
  Upload({Hour({{"hour_window", "2024"}})});
  EXPECT_EQ(sink_->sent[0].collection_id(), "2024H_ZT12345678-TH");
}

TEST_F(ThermalSummaryTest, AsksForTheProcessorsOnceForAllHours) {
  Upload({Hour(), Hour(), Hour()});
  EXPECT_THAT(simulation::RecordedQueries(), ElementsAre("SELECT DeviceID, LoadPercentage FROM Win32_Processor"));
}

TEST_F(ThermalSummaryTest, CarriesTheProcessorsIdAndLoadInEveryHour) {
  Upload({Hour(), Hour()});
  for (const auto& record : sink_->sent) {
    ASSERT_THAT(record.hw_info().cpus_info(), SizeIs(1));
    EXPECT_EQ(record.hw_info().cpus_info(0).device_id(), "CPU0");
    EXPECT_EQ(record.hw_info().cpus_info(0).utilization_percent(), 12.0F);
    EXPECT_THAT(record.hw_info().cpus_info(0).temperature_sensors_info(), SizeIs(1));
  }
}

TEST_F(ThermalSummaryTest, ShowsTheLastProcessorInOneEntry) {
  machine_.wmi.classes["Win32_Processor"].push_back({{"DeviceID", "CPU1"}, {"LoadPercentage", 34}});
  Upload({Hour()});
  ASSERT_THAT(HardwareOf(0).cpus_info(), SizeIs(1));
  EXPECT_EQ(HardwareOf(0).cpus_info(0).device_id(), "CPU1");
  EXPECT_EQ(HardwareOf(0).cpus_info(0).utilization_percent(), 34.0F);
}

TEST_F(ThermalSummaryTest, ALoadThatIsNoNumberDoesNotOverwriteTheOneBefore) {
  machine_.wmi.classes["Win32_Processor"] = {{{"DeviceID", "CPU0"}, {"LoadPercentage", 10}},
                                             {{"DeviceID", "CPU1"}, {"LoadPercentage", std::nan("")}}};
  Upload({Hour()});
  EXPECT_EQ(HardwareOf(0).cpus_info(0).device_id(), "CPU1");
  EXPECT_EQ(HardwareOf(0).cpus_info(0).utilization_percent(), 10.0F);
}

TEST_F(ThermalSummaryTest, ALoadThatCannotBeReadIsZero) {
  machine_.wmi.classes["Win32_Processor"] = {{{"DeviceID", "CPU0"}, {"LoadPercentage", 10}}, {{"DeviceID", "CPU1"}}};
  Upload({Hour()});
  EXPECT_EQ(HardwareOf(0).cpus_info(0).utilization_percent(), 0.0F);
}

TEST_F(ThermalSummaryTest, ReadsOnlyTheFirst32Processors) {
  auto& processors = machine_.wmi.classes["Win32_Processor"];
  processors.clear();
  for (int i = 1; i <= 33; ++i) processors.push_back({{"DeviceID", "CPU" + std::to_string(i)}, {"LoadPercentage", i}});
  Upload({Hour()});
  EXPECT_EQ(HardwareOf(0).cpus_info(0).device_id(), "CPU32");
  EXPECT_EQ(HardwareOf(0).cpus_info(0).utilization_percent(), 32.0F);
}

TEST_F(ThermalSummaryTest, WithoutProcessorsTheEntryHoldsTheTemperatureOnly) {
  machine_.wmi.classes["Win32_Processor"].clear();
  Upload({Hour()});
  ASSERT_THAT(HardwareOf(0).cpus_info(), SizeIs(1));
  EXPECT_FALSE(HardwareOf(0).cpus_info(0).has_device_id());
  EXPECT_FALSE(HardwareOf(0).cpus_info(0).has_utilization_percent());
  EXPECT_THAT(HardwareOf(0).cpus_info(0).temperature_sensors_info(), SizeIs(1));
}

TEST_F(ThermalSummaryTest, AFailedProcessorQueryDropsTheProcessorSectionOnly) {
  machine_.wmi.failures = {{"Win32_Processor", -1, std::nullopt, 0}};
  Upload({Hour()});
  EXPECT_THAT(HardwareOf(0).cpus_info(), IsEmpty());
  EXPECT_THAT(HardwareOf(0).system_board_info().temperature_sensors_info(), SizeIs(2));
  EXPECT_THAT(HardwareOf(0).fans_info(), SizeIs(2));
}

TEST_F(ThermalSummaryTest, CutsTemperaturesTowardZero) {
  EXPECT_EQ(CpuTemperature("41.99"), 41U);
  EXPECT_EQ(CpuTemperature("0.9"), 0U);
}

TEST_F(ThermalSummaryTest, ANegativeTemperatureWraps) {
  EXPECT_EQ(CpuTemperature("-1.5"), 4294967295U);
  EXPECT_EQ(CpuTemperature("-0.5"), 0U);
}

TEST_F(ThermalSummaryTest, ATemperatureBeyond32BitsKeepsItsLowBits) {
  EXPECT_EQ(CpuTemperature("4294967296.0"), 0U);
  EXPECT_EQ(CpuTemperature("8589934592.0"), 0U);
  EXPECT_EQ(CpuTemperature("3000000000.0"), 3000000000U);
}

TEST_F(ThermalSummaryTest, ATemperatureBeyond64BitsOrNotANumberIsZero) {
  EXPECT_EQ(CpuTemperature("1e30"), 0U);
  EXPECT_EQ(CpuTemperature("-1e30"), 0U);
  EXPECT_EQ(CpuTemperature("inf"), 0U);
  EXPECT_EQ(CpuTemperature("nan"), 0U);
}

TEST_F(ThermalSummaryTest, NamesItsSensors) {
  Upload({Hour()});
  EXPECT_EQ(HardwareOf(0).cpus_info(0).temperature_sensors_info(0).sensor_name(), "cpu_temp");
  const auto& board = HardwareOf(0).system_board_info().temperature_sensors_info();
  ASSERT_THAT(board, SizeIs(2));
  EXPECT_EQ(board[0].sensor_name(), "ext_sensor");
  EXPECT_EQ(board[0].temperature_celsius(), 40U);
  EXPECT_EQ(board[1].sensor_name(), "loc_sensor");
  EXPECT_EQ(board[1].temperature_celsius(), 30U);
}

TEST_F(ThermalSummaryTest, AMissingProcessorTemperatureDropsThatSensorOnly) {
  Upload({Hour({{"cpu_temp_avg", ""}})});
  EXPECT_THAT(HardwareOf(0).cpus_info(0).temperature_sensors_info(), IsEmpty());
  EXPECT_THAT(HardwareOf(0).system_board_info().temperature_sensors_info(), SizeIs(2));
}

TEST_F(ThermalSummaryTest, OneMissingBoardReadingDropsBoth) {
  for (const char* column : {"ext_sensor_avg", "loc_sensor_avg"}) {
    sink_->sent.clear();
    Upload({Hour({{column, ""}})});
    EXPECT_FALSE(HardwareOf(0).has_system_board_info()) << column;
    EXPECT_THAT(HardwareOf(0).fans_info(), SizeIs(2)) << column;
  }
}

TEST_F(ThermalSummaryTest, OneMissingFanReadingDropsBothFans) {
  for (const char* column : {"fan1_current_tach_speed_avg", "fan1_target_tach_speed_avg", "fan1_speed_step_avg",
                             "fan2_current_tach_speed_avg", "fan2_target_tach_speed_avg", "fan2_speed_step_avg"}) {
    sink_->sent.clear();
    Upload({Hour({{column, ""}})});
    EXPECT_THAT(HardwareOf(0).fans_info(), IsEmpty()) << column;
    EXPECT_EQ(sink_->sent[0].sample_points_actual(), 60U) << column;
  }
}

TEST_F(ThermalSummaryTest, ATextThatIsNoNumberDropsItsBlockOnly) {
  Upload({Hour({{"cpu_temp_avg", "hot"}, {"fan2_speed_step_avg", "1e99"}})});
  EXPECT_THAT(HardwareOf(0).cpus_info(0).temperature_sensors_info(), IsEmpty());
  EXPECT_THAT(HardwareOf(0).fans_info(), IsEmpty());
  EXPECT_THAT(HardwareOf(0).system_board_info().temperature_sensors_info(), SizeIs(2));
}

TEST_F(ThermalSummaryTest, ReportsBothFansWithTheirStatisticsInOrder) {
  Upload({Hour()});
  ASSERT_THAT(HardwareOf(0).fans_info(), SizeIs(2));
  EXPECT_EQ(HardwareOf(0).fans_info(0).fan_id(), 1U);
  EXPECT_EQ(TextOf(HardwareOf(0).fans_info(0).fan_statistics_info()),
            "duty_cycle=20.500000 tach_current=1000.000000 tach_target=1100.000000 ");
  EXPECT_EQ(HardwareOf(0).fans_info(1).fan_id(), 2U);
  EXPECT_EQ(TextOf(HardwareOf(0).fans_info(1).fan_statistics_info()),
            "duty_cycle=25.000000 tach_current=2000.000000 tach_target=2200.000000 ");
}

TEST_F(ThermalSummaryTest, CutsTachometerAveragesButNotTheDutyCycle) {
  Upload({Hour({{"fan1_current_tach_speed_avg", "1234.9"}, {"fan1_speed_step_avg", "37.5"}})});
  EXPECT_EQ(TextOf(HardwareOf(0).fans_info(0).fan_statistics_info()),
            "duty_cycle=37.500000 tach_current=1234.000000 tach_target=1100.000000 ");
}

TEST_F(ThermalSummaryTest, AFanThatStoodStillIsNotReported) {
  Upload({Hour({{"fan1_current_tach_speed_avg", "0.0"},
                {"fan1_target_tach_speed_avg", "0.0"},
                {"fan1_speed_step_avg", "0.0"}})});
  ASSERT_THAT(HardwareOf(0).fans_info(), SizeIs(1));
  EXPECT_EQ(HardwareOf(0).fans_info(0).fan_id(), 2U);
}

TEST_F(ThermalSummaryTest, AFanWithATargetOnlyHasThatStatisticOnly) {
  Upload({Hour({{"fan1_current_tach_speed_avg", "0.0"}, {"fan1_speed_step_avg", "0.0"}})});
  EXPECT_EQ(TextOf(HardwareOf(0).fans_info(0).fan_statistics_info()), "tach_target=1100.000000 ");
}

TEST_F(ThermalSummaryTest, AFanSpeedThatIsNoNumberCountsAsRunning) {
  Upload({Hour({{"fan1_current_tach_speed_avg", "nan"},
                {"fan1_target_tach_speed_avg", "0.0"},
                {"fan1_speed_step_avg", "0.0"}})});
  ASSERT_THAT(HardwareOf(0).fans_info(), SizeIs(2));
  EXPECT_EQ(TextOf(HardwareOf(0).fans_info(0).fan_statistics_info()), "tach_current=0.000000 ");
}

TEST_F(ThermalSummaryTest, AnHourWithoutItsSampleCountIsNotSentAndTheNextOneIs) {
  Upload({Hour({{"num_samples", ""}}), Hour({{"num_samples", "many"}}), Hour({{"num_samples", "3"}})});
  ASSERT_THAT(sink_->sent, SizeIs(1));
  EXPECT_EQ(sink_->sent[0].sample_points_actual(), 3U);
  EXPECT_THAT(HardwareOf(0).fans_info(), SizeIs(2));
}

TEST_F(ThermalSummaryTest, AnHourWithoutItsWindowIsNotSent) {
  Upload({Hour({{"hour_window", ""}})});
  EXPECT_THAT(sink_->sent, IsEmpty());
}

TEST_F(ThermalSummaryTest, ASampleCountBeyond32BitsKeepsItsLowBits) {
  Upload({Hour({{"num_samples", "4294967299"}})});
  EXPECT_EQ(sink_->sent[0].sample_points_actual(), 3U);
}

TEST_F(ThermalSummaryTest, NothingOfAnHourIsLeftInTheNext) {
  Upload({Hour(), {{"hour_window", "2024-05-01T11:00:00.000Z"}, {"num_samples", "1"}}});
  ASSERT_THAT(sink_->sent, SizeIs(2));
  EXPECT_THAT(HardwareOf(1).cpus_info(0).temperature_sensors_info(), IsEmpty());
  EXPECT_FALSE(HardwareOf(1).has_system_board_info());
  EXPECT_THAT(HardwareOf(1).fans_info(), IsEmpty());
}

TEST_F(ThermalSummaryTest, WithoutRowsOrClientNothingHappens) {
  simulation::UseMachine(machine_);
  shared::wmi::WMIClient wmi(tests::kWmiNamespace);
  std::vector<SummaryRow> rows;
  collector_.UploadThermalSamples(&rows, &wmi);
  collector_.UploadThermalSamples(nullptr, &wmi);
  rows.push_back(Hour());
  collector_.UploadThermalSamples(&rows, nullptr);
  EXPECT_THAT(sink_->sent, IsEmpty());
  EXPECT_THAT(simulation::RecordedQueries(), IsEmpty());
}

TEST_F(ThermalSummaryTest, AFailedSendDoesNotStopTheNextHour) {
  sink_->send_outcome = {5, 1, "no upload today", "", ""};
  Upload({Hour(), Hour()});
  EXPECT_THAT(sink_->sent, SizeIs(2));
}

TEST_F(ThermalSummaryTest, ASendThatThrowsDoesNotStopTheNextHour) {
  simulation::UseMachine(machine_);
  shared::wmi::WMIClient wmi(shared::wmi::kSystemNamespace);
  int sends = 0;
  const auto send = [&](const PcLogPerformanceSamplesAsCDM&) {
    ++sends;
    throw std::runtime_error("no upload today");
  };
  SendThermalHours({Hour(), Hour()}, wmi, send);
  EXPECT_EQ(sends, 2);
}

TEST_F(ThermalSummaryTest, LeavesTheLiveRecordAlone) {
  PerfMessages::Init(&collector_, 50);
  Upload({Hour()});
  EXPECT_FALSE(PerfMessages::static_cdm_->has_hw_info());
  EXPECT_EQ(PerfMessages::static_cdm_->sample_points_actual(), 1U);
}

TEST_F(ThermalSummaryTest, AClientThatThrowsCostsTheProcessorsSectionOnly) {
  simulation::WatchCalls([](const simulation::Call& call) {
    return call.name.starts_with("query of") ? simulation::Disturbance::kThrows : simulation::Disturbance::kNone;
  });
  Upload({Hour()});
  simulation::WatchCalls({});
  ASSERT_THAT(sink_->sent, SizeIs(1));
  EXPECT_THAT(sink_->sent[0].hw_info().cpus_info(), IsEmpty());
  EXPECT_THAT(sink_->sent[0].hw_info().fans_info(), SizeIs(2));
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
