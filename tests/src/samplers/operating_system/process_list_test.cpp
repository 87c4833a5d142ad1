#include "process_sampler_fixture.h"
#include "support/status_codes.h"

// Which processes are listed, ranked and reported.
namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using testing::UnorderedElementsAre;

class ProcessListTest : public ProcessSamplerTest {
 protected:
  // One whose id can be told from its name.
  void AddNumbered(std::uint32_t id, double load) { AddProcess(id, load, "app" + std::to_string(id)); }

  /// Samples with a busy process beside those that a test is about, which are to be left out in silence: neither asked
  /// for their operations nor reported.
  void ExpectToReportOnlyAnother() {
    AddProcess(900, 1, "other");
    Sample();
    EXPECT_THAT(Names(), ElementsAre("other"));
    EXPECT_THAT(simulation::RecordedQueries(),
                ElementsAre(kProcessesQuery, std::string(kOperationsQuery) + "ProcessId=900"));
    EXPECT_THAT(log_.lines, IsEmpty());
  }
};

TEST_F(ProcessListTest, AsksItsTwoQueriesOnceEach) {
  AddProcess(12, 20);
  AddProcess(34, 30);
  Sample();
  EXPECT_THAT(simulation::RecordedQueries(),
              ElementsAre(kProcessesQuery, std::string(kOperationsQuery) + "ProcessId=34 OR ProcessId=12"));
}

TEST_F(ProcessListTest, AMachineWithoutProcessesIsAskedForNoOperations) {
  const OperatingSystemSection& section = Sample();
  EXPECT_TRUE(section.has_operating_session_info());
  EXPECT_THAT(Names(), IsEmpty());
  EXPECT_THAT(simulation::RecordedQueries(), ElementsAre(kProcessesQuery));
}

TEST_F(ProcessListTest, AnIdleMachineReportsNoProcess) {
  AddProcess(12, 0);
  AddProcess(34, 0);
  Sample();
  EXPECT_THAT(Names(), IsEmpty());
  EXPECT_THAT(simulation::RecordedQueries(), SizeIs(1));
  EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(ProcessListTest, ReportsASingleProcess) {
  AddProcess(12, 20, "editor");
  const auto& process = SampleOnly();
  EXPECT_EQ(process.executable_file_id(), "editor");
  EXPECT_EQ(process.base_priority(), 8U);
  EXPECT_EQ(process.resource_utilization_info().cpu_utilization_percent(), 20.0F);
  EXPECT_EQ(process.resource_utilization_info().total_cpu_time_seconds(), 2U);
}

TEST_F(ProcessListTest, ReportsTheTenBusiestOfMore) {
  for (std::uint32_t id = 1; id <= 12; ++id) AddNumbered(id, id);
  Sample();
  EXPECT_THAT(Names(),
              UnorderedElementsAre("app3", "app4", "app5", "app6", "app7", "app8", "app9", "app10", "app11", "app12"));
  EXPECT_EQ(simulation::RecordedQueries().at(1),
            std::string(kOperationsQuery) +
                "ProcessId=12 OR ProcessId=11 OR ProcessId=10 OR ProcessId=9 OR ProcessId=8 OR ProcessId=7 OR "
                "ProcessId=6 OR ProcessId=5 OR ProcessId=4 OR ProcessId=3");
}

TEST_F(ProcessListTest, ReportsTenOfFiveThousand) {
  for (std::uint32_t id = 1; id <= 5'000; ++id) AddNumbered(id, id % 1'000 == 0 ? 99 : 1 + id / 10'000.0);
  Sample();
  EXPECT_THAT(Names(), UnorderedElementsAre("app1000", "app2000", "app3000", "app4000", "app5000", "app4999", "app4998",
                                            "app4997", "app4996", "app4995"));
  EXPECT_THAT(simulation::RecordedQueries(), SizeIs(2));
}

TEST_F(ProcessListTest, ReportsTenOfAnyThatTie) {
  for (std::uint32_t id = 1; id <= 15; ++id) AddNumbered(id, 7);
  Sample();
  const std::vector<std::string> names = Names();
  EXPECT_THAT(names, SizeIs(10));
  EXPECT_THAT(names, Each(StartsWith("app")));
  EXPECT_THAT(std::set<std::string>(names.begin(), names.end()), SizeIs(10));
}

TEST_F(ProcessListTest, KeepsTheOrderInWhichTheOperationsAreTold) {
  AddNumbered(5, 10);
  AddNumbered(3, 30);
  AddNumbered(4, 20);
  Sample();
  EXPECT_THAT(Names(), ElementsAre("app5", "app3", "app4"));
}

TEST_F(ProcessListTest, LeavesOutTheIdleProcessAndTheTotal) {
  AddListedRow(0, 95, "Idle");
  AddListedRow("0", 100, "_Total");
  AddToSystem(0);
  ExpectToReportOnlyAnother();
}

TEST_F(ProcessListTest, LeavesOutWhatHasNoId) {
  AddListedRow("", 50);
  AddListedRow(simulation::WmiNull{}, 50);
  machine_.wmi.classes[kListedClass].push_back({{"Name", "nameless"}, {"PercentProcessorTime", "50"}});
  AddToSystem(0);
  ExpectToReportOnlyAnother();
}

TEST_F(ProcessListTest, LeavesOutIdsThatAreNoNumbers) {
  AddToSystem(12);
  for (const char* id : {"twelve", "12a", " 12", "12 OR 1=1", "-12", "+12", "0x12", "4294967308", "１２"}) {
    AddListedRow(id, 50);
  }
  ExpectToReportOnlyAnother();
}

TEST_F(ProcessListTest, LeavesOutALoadThatIsNotAboveZero) {
  AddProcess(12, -1);
  ExpectToReportOnlyAnother();
}

TEST_F(ProcessListTest, LeavesOutALoadThatIsNoNumber) {
  AddProcess(12, 50);
  machine_.wmi.classes[kListedClass][0]["PercentProcessorTime"] = "much";
  ExpectToReportOnlyAnother();
}

TEST_F(ProcessListTest, ReadsALoadOf64BitsFromItsText) {
  AddProcess(12, 50);
  machine_.wmi.classes[kListedClass][0]["PercentProcessorTime"] = "184";
  EXPECT_EQ(SampleOnly().resource_utilization_info().cpu_utilization_percent(), 184.0F);
}

TEST_F(ProcessListTest, AnUnreadablePriorityIsZero) {
  AddProcess(12, 50);
  machine_.wmi.classes[kListedClass][0].erase("PriorityBase");
  const auto& process = SampleOnly();
  EXPECT_TRUE(process.has_base_priority());
  EXPECT_EQ(process.base_priority(), 0U);
}

TEST_F(ProcessListTest, OfSeveralRowsWithOneIdTheLastCounts) {
  AddProcess(12, 50, "first");
  AddListedRow("12", 60, "second");
  const auto& process = SampleOnly();
  EXPECT_EQ(process.executable_file_id(), "second");
  EXPECT_EQ(process.resource_utilization_info().cpu_utilization_percent(), 60.0F);
}

TEST_F(ProcessListTest, ALaterIdleRowDoesNotReplaceABusyOne) {
  AddProcess(12, 50, "first");
  AddListedRow("12", 0, "second");
  EXPECT_EQ(SampleOnly().executable_file_id(), "first");
}

TEST_F(ProcessListTest, SkipsInSilenceAProcessThatIsNoMoreThere) {
  AddProcess(12, 50);
  machine_.processes.clear();
  ExpectToReportOnlyAnother();
}

TEST_F(ProcessListTest, SkipsInSilenceAProcessThatCannotBeOpenedForReading) {
  AddProcess(12, 50).open_for_reading = kRefused;
  ExpectToReportOnlyAnother();
}

TEST_F(ProcessListTest, SkipsInSilenceAProcessWhoseTimesAreNotTold) {
  AddProcess(12, 50).times = kRefused;
  ExpectToReportOnlyAnother();
}

TEST_F(ProcessListTest, SkipsInSilenceAProcessWhoseMemoryIsNotTold) {
  AddProcess(12, 50).memory = kRefused;
  ExpectToReportOnlyAnother();
}

TEST_F(ProcessListTest, SkipsAProcessOfLessThanASecond) {
  simulation::Process& process = AddProcess(12, 50);
  process.user_100ns = kSecond100ns / 2;
  process.kernel_100ns = kSecond100ns / 2 - 1;
  ExpectToReportOnlyAnother();
}

TEST_F(ProcessListTest, AddsUserAndKernelTimeBeforeItCutsToSeconds) {
  simulation::Process& process = AddProcess(12, 50);
  process.user_100ns = kSecond100ns * 6 / 10;
  process.kernel_100ns = kSecond100ns * 6 / 10;
  EXPECT_EQ(SampleOnly().resource_utilization_info().total_cpu_time_seconds(), 1U);
}

TEST_F(ProcessListTest, KeepsTheLow32BitsOfAbsurdProcessorTimes) {
  simulation::Process& process = AddProcess(12, 50);
  process.user_100ns = 0xFFFF'FFFF'FFFF'FFFF;
  process.kernel_100ns = 0;
  // 1844674407370.955 seconds.
  EXPECT_EQ(SampleOnly().resource_utilization_info().total_cpu_time_seconds(), 1844674407370ULL % 4294967296ULL);
}

TEST_F(ProcessListTest, SkipsAProcessWithoutAWorkingSet) {
  AddProcess(12, 50).working_set_bytes = 0;
  ExpectToReportOnlyAnother();
}

TEST_F(ProcessListTest, SkipsAProcessWithoutAPeak) {
  AddProcess(12, 50).peak_working_set_bytes = 0;
  ExpectToReportOnlyAnother();
}

TEST_F(ProcessListTest, AFailedListEndsThePassWithItsTextAndKeepsTheSession) {
  AddProcess(12, 50);
  machine_.wmi.failures = {{kListedClass, tests::kAccessDenied, std::nullopt, 0}};
  EXPECT_EQ(SampleAndFail(), "Error while querying Win32_PerFormattedData_PerfProc_Process.");
  EXPECT_TRUE(Section().operating_session_info().has_time_since_last_logon_minutes());
  EXPECT_THAT(Names(), IsEmpty());
  EXPECT_THAT(simulation::RecordedQueries(), SizeIs(1));
}

TEST_F(ProcessListTest, KeepsNamesOfAnyScript) {
  AddProcess(12, 50, "прогр–編集者🖊");
  EXPECT_EQ(SampleOnly().executable_file_id(), "прогр–編集者🖊");
}

TEST_F(ProcessListTest, CutsANameTo256BytesBetweenCharacters) {
  std::string name = "x";
  for (int i = 0; i < 128; ++i) name += "ü";
  AddProcess(12, 50, name);
  EXPECT_EQ(SampleOnly().executable_file_id(), name.substr(0, 255));
}

TEST_F(ProcessListTest, KeepsANameOf256Bytes) {
  const std::string name(256, 'n');
  AddProcess(12, 50, name + "x");
  EXPECT_EQ(SampleOnly().executable_file_id(), name);
}

TEST_F(ProcessListTest, AProcessWithoutANameIsUnknown) {
  AddProcess(12, 50);
  machine_.wmi.classes[kListedClass][0].erase("Name");
  EXPECT_EQ(SampleOnly().executable_file_id(), "unknown");
}

TEST_F(ProcessListTest, TakesTheLow32BitsOfThePeak) {
  AddProcess(12, 50).peak_working_set_bytes = (1ULL << 32U) + (3ULL << 20U);
  EXPECT_EQ(SampleOnly().resource_utilization_info().memory_utilization_peak_mb(), 3U);
}

TEST_F(ProcessListTest, AProcessWhosePeakIsBelowAMebibyteIsNotReported) {
  AddProcess(12, 50).peak_working_set_bytes = 1'000'000;
  AddProcess(34, 40, "other");
  Sample();
  EXPECT_THAT(Names(), ElementsAre("other"));
}

TEST_F(ProcessListTest, ACopyOfAnotherBuilderUsesItsClient) {
  AddProcess(12, 50, "editor");
  PopulateByCopy(OperatingSystemInfoMsg(&wmi_));
  EXPECT_THAT(Names(), ElementsAre("editor"));
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
