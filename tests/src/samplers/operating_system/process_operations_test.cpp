#include "samplers/operating_system/process_operations.h"

#include "process_sampler_fixture.h"
#include "support/status_codes.h"
#include "support/wmi_namespace.h"

// The operation counts, the units of the record, and rows that tell of no process of the list.
namespace zt::telemetry::collector::performancesamples {
namespace {

using common::Error;
using testing::ElementsAre;
using testing::IsEmpty;

class ProcessOperationsTest : public ProcessSamplerTest {
 protected:
  const auto& SampleUtilization() { return SampleOnly().resource_utilization_info(); }

  /// The error of a row that is read for `table`.
  static Error FindAndFail(const shared::wmi::WMIClient& wmi, const ProcessTable& table) {
    try {
      FindProcessOfRow(wmi, table);
    } catch (const Error& error) {
      return error;
    }
    ADD_FAILURE() << "no error was thrown";
    return {};
  }
};

// Process records after the conversion of one figure.
WMIProcessInfo WithWorkingSet(float bytes) {
  WMIProcessInfo process;
  process.working_set = bytes;
  ConvertUnits(process);
  return process;
}

WMIProcessInfo WithPeak(std::uint32_t bytes) {
  WMIProcessInfo process;
  process.peak_working_set = bytes;
  ConvertUnits(process);
  return process;
}

TEST_F(ProcessOperationsTest, TellsTheWorkingSetInMebibytesWithTwoDecimals) {
  AddProcess(12, 50).working_set_bytes = 123'456'789;
  EXPECT_EQ(SampleUtilization().memory_utilization_mb(), 117.74F);
}

TEST_F(ProcessOperationsTest, TellsThePeakInWholeMebibytes) {
  AddProcess(12, 50).peak_working_set_bytes = 123'456'789;
  EXPECT_EQ(SampleUtilization().memory_utilization_peak_mb(), 117U);
}

TEST_F(ProcessOperationsTest, RoundsToTwoDecimalsBeforeItCutsThePeak) {
  AddProcess(12, 50).peak_working_set_bytes = (3ULL << 20U) - 1;  // 2.999999 MiB, to two decimals 3.00
  EXPECT_EQ(SampleUtilization().memory_utilization_peak_mb(), 3U);
}

TEST_F(ProcessOperationsTest, TellsAWorkingSetBeyond32Bits) {
  AddProcess(12, 50).working_set_bytes = 5ULL << 30U;
  EXPECT_EQ(SampleUtilization().memory_utilization_mb(), 5120.0F);
}

TEST_F(ProcessOperationsTest, SurvivesTheLargestWorkingSet) {
  AddProcess(12, 50).working_set_bytes = 0xFFFF'FFFF'FFFF'FFFF;
  EXPECT_EQ(SampleUtilization().memory_utilization_mb(), 17592186044416.0F);
}

TEST_F(ProcessOperationsTest, TellsCountsAndTheSameDividedBy1024) {
  AddProcess(12, 50);
  OperationsRow()["WriteOperationCount"] = "5000";
  OperationsRow()["ReadOperationCount"] = "1023";
  const auto& utilization = SampleUtilization();
  EXPECT_EQ(utilization.io_writes(), 5000U);
  EXPECT_EQ(utilization.io_writes_kb(), 4U);
  EXPECT_EQ(utilization.io_reads(), 1023U);
  EXPECT_TRUE(utilization.has_io_reads_kb());
  EXPECT_EQ(utilization.io_reads_kb(), 1U);  // 0.999 is 1.00 to two decimals
}

TEST_F(ProcessOperationsTest, CutsTheDividedCountsToWholeNumbers) {
  AddProcess(12, 50);
  OperationsRow()["WriteOperationCount"] = "1018";  // 0.994
  OperationsRow()["ReadOperationCount"] = "2042";   // 1.994
  const auto& utilization = SampleUtilization();
  EXPECT_EQ(utilization.io_writes_kb(), 0U);
  EXPECT_EQ(utilization.io_reads_kb(), 1U);
}

TEST_F(ProcessOperationsTest, KeepsEveryDigitOfLargeCounts) {
  AddProcess(12, 50);
  OperationsRow()["WriteOperationCount"] = "4294967295";
  OperationsRow()["ReadOperationCount"] = "16777217";
  const auto& utilization = SampleUtilization();
  EXPECT_EQ(utilization.io_writes(), 4294967295U);
  EXPECT_EQ(utilization.io_writes_kb(), 4194304U);
  EXPECT_EQ(utilization.io_reads(), 16777217U);
}

TEST_F(ProcessOperationsTest, ACountBeyond32BitsCannotBeReadAndIsZero) {
  AddProcess(12, 50);
  OperationsRow()["WriteOperationCount"] = "4294967296";
  const auto& utilization = SampleUtilization();
  EXPECT_TRUE(utilization.has_io_writes());
  EXPECT_EQ(utilization.io_writes(), 0U);
  EXPECT_EQ(utilization.io_reads(), 2048U);
}

TEST_F(ProcessOperationsTest, MissingCountsAreZero) {
  AddProcess(12, 50);
  OperationsRow().erase("WriteOperationCount");
  OperationsRow()["ReadOperationCount"] = simulation::WmiNull{};
  const auto& utilization = SampleUtilization();
  EXPECT_EQ(utilization.io_writes(), 0U);
  EXPECT_EQ(utilization.io_writes_kb(), 0U);
  EXPECT_EQ(utilization.io_reads(), 0U);
  EXPECT_EQ(utilization.io_reads_kb(), 0U);
}

TEST_F(ProcessOperationsTest, AProcessThatTheSecondQueryDoesNotTellOfIsNotReported) {
  AddProcess(12, 50, "first");
  AddProcess(34, 40, "second");
  machine_.wmi.classes[kOperationsClass].erase(machine_.wmi.classes[kOperationsClass].begin());
  Sample();
  EXPECT_THAT(Names(), ElementsAre("second"));
}

TEST_F(ProcessOperationsTest, ARowOfAnUnlistedProcessIsLeftOutWithALineAndTheRestGoesOn) {
  AddToSystem(7);
  AddListedRow("007", 50, "secret");  // asked for as 007, told as 7
  machine_.wmi.classes[kOperationsClass] = {{{"ProcessId", 7}}};
  AddProcess(12, 40, "editor");
  Sample();
  EXPECT_THAT(Names(), ElementsAre("editor"));
  EXPECT_THAT(log_.Messages(plog::warning), ElementsAre("A process is left out: unknown Win32_Process entry found..."));
  EXPECT_THAT(log_.Messages(plog::error), IsEmpty());
}

// Its figures are turned into the record's units once more, and what is left of the peak is nothing.
TEST_F(ProcessOperationsTest, ASecondRowOfAProcessLeavesItOutOfTheRecord) {
  AddProcess(12, 50, "editor").peak_working_set_bytes = 0xFFFF'FFFF;
  AddProcess(34, 40, "compiler");
  machine_.wmi.classes[kOperationsClass].push_back({{"ProcessId", 12}, {"WriteOperationCount", "1"}});
  Sample();
  EXPECT_THAT(Names(), ElementsAre("compiler"));
  EXPECT_THAT(log_.Messages(plog::warning), IsEmpty());
}

TEST_F(ProcessOperationsTest, ASecondRowOfAProcessFindsTheSameRecordAgain) {
  AddProcess(12, 50);
  machine_.wmi.classes[kOperationsClass].push_back({{"ProcessId", 12}, {"WriteOperationCount", "1"}});
  simulation::UseMachine(machine_);
  shared::wmi::WMIClient wmi(tests::kWmiNamespace);
  ASSERT_EQ(wmi.ExecQuery(L"SELECT ProcessId, WriteOperationCount, ReadOperationCount FROM Win32_Process"), 0);
  const ProcessTable table = {{"12", std::make_shared<WMIProcessInfo>()}};
  ASSERT_TRUE(wmi.Next());
  EXPECT_EQ(FindProcessOfRow(wmi, table), table.at("12"));
  EXPECT_EQ(table.at("12")->io_writes, 4096U);
  ASSERT_TRUE(wmi.Next());
  EXPECT_EQ(FindProcessOfRow(wmi, table), table.at("12"));
  EXPECT_EQ(table.at("12")->io_writes, 1U);
  EXPECT_EQ(table.at("12")->io_reads, 2048U) << "a count that cannot be read stays as it is";
}

TEST_F(ProcessOperationsTest, ARowWithoutAnIdIsAnErrorThatSaysSo) {
  AddProcess(12, 50);
  simulation::UseMachine(machine_);
  shared::wmi::WMIClient wmi(tests::kWmiNamespace);
  ASSERT_EQ(wmi.ExecQuery(L"SELECT WriteOperationCount FROM Win32_Process"), 0);
  ASSERT_TRUE(wmi.Next());
  ProcessTable table = {{"12", std::make_shared<WMIProcessInfo>()}};
  const Error error = FindAndFail(wmi, table);
  EXPECT_EQ(error.description, "ProcessId value could not be read...");
  EXPECT_EQ(error.code, shared::wmi::kPropertyNotFound);
  EXPECT_EQ(table.size(), 1U);
}

TEST_F(ProcessOperationsTest, ARowOfAnUnlistedProcessIsAnErrorThatSaysSo) {
  AddProcess(12, 50);
  simulation::UseMachine(machine_);
  shared::wmi::WMIClient wmi(tests::kWmiNamespace);
  ASSERT_EQ(wmi.ExecQuery(L"SELECT ProcessId FROM Win32_Process"), 0);
  ASSERT_TRUE(wmi.Next());
  ProcessTable table = {{"13", std::make_shared<WMIProcessInfo>()}};
  EXPECT_EQ(FindAndFail(wmi, table).description, "unknown Win32_Process entry found...");
}

TEST_F(ProcessOperationsTest, AFailedSecondQueryCostsTheProcessesAndIsToldInTheLog) {
  AddProcess(12, 50);
  machine_.wmi.failures = {{"FROM Win32_Process ", tests::kAccessDenied, std::nullopt, 0}};
  const OperatingSystemSection& section = Sample();
  EXPECT_EQ(section.resource_intensive_processes_info_size(), 0);
  EXPECT_TRUE(section.operating_session_info().has_time_since_last_boot_minutes());
  EXPECT_THAT(log_.Messages(plog::warning),
              ElementsAre("Processes are left out: querying Win32_Process failed with status -2147217405"));
}

TEST(ProcessUnitsTest, RoundsHalvesOfAHundredthAwayFromZero) {
  // 0.125 MiB and 1.375 MiB.
  EXPECT_EQ(WithWorkingSet(131'072).working_set, 0.13F);
  EXPECT_EQ(WithWorkingSet(1'441'792).working_set, 1.38F);
}

TEST(ProcessUnitsTest, LeavesNothingAtNothing) {
  const WMIProcessInfo process = WithWorkingSet(0);
  EXPECT_EQ(process.working_set, 0.0F);
  EXPECT_EQ(process.peak_working_set, 0U);
  EXPECT_EQ(process.io_writes, 0U);
  EXPECT_EQ(process.io_reads_kb, 0U);
}

TEST(ProcessUnitsTest, TurnsTheLargestPeakIntoMebibytes) {
  EXPECT_EQ(WithPeak(0xFFFF'FFFF).peak_working_set, 4096U);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
