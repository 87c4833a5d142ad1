#include "samplers/operating_system/process_section.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

// Which processes of the list get into the record.
namespace zt::telemetry::collector::performancesamples {
namespace {

using contract::upload::log::PcLogPerformanceSamplesAsCDM_OperatingSystemInfo;
using testing::ElementsAre;
using testing::IsEmpty;

WMIProcessInfo Measured(const std::string& name) {
  WMIProcessInfo process;
  process.name = name;
  process.status = "running";
  process.start_time = "2026-03-07T12:00:00-02:00";
  process.priority = 13;
  process.cpu_percent = 12.5F;
  process.working_set = 64.25F;
  process.peak_working_set = 128;
  process.cpu_time = 7;
  process.io_writes = 4096;
  process.io_writes_kb = 4;
  process.io_reads = 2048;
  process.io_reads_kb = 2;
  process.is_elevated = true;
  process.has_window_title = true;
  return process;
}

class ProcessSectionTest : public testing::Test {
 protected:
  void Add(const WMIProcessInfo& process) { processes_.push_back(std::make_shared<WMIProcessInfo>(process)); }

  std::vector<std::string> Names() {
    AddProcesses(processes_, section_);
    std::vector<std::string> names;
    for (const auto& entry : section_.resource_intensive_processes_info()) names.push_back(entry.executable_file_id());
    return names;
  }

  ProcessList processes_;
  PcLogPerformanceSamplesAsCDM_OperatingSystemInfo section_;
};

TEST_F(ProcessSectionTest, PutsEveryFigureIntoItsField) {
  Add(Measured("editor"));
  ASSERT_THAT(Names(), ElementsAre("editor"));
  const auto& entry = section_.resource_intensive_processes_info(0);
  EXPECT_EQ(entry.base_priority(), 13U);
  EXPECT_EQ(entry.status(), "running");
  EXPECT_EQ(entry.start_time(), "2026-03-07T12:00:00-02:00");
  EXPECT_TRUE(entry.is_elevated());
  EXPECT_TRUE(entry.has_window_title());
  const auto& utilization = entry.resource_utilization_info();
  EXPECT_EQ(utilization.total_cpu_time_seconds(), 7U);
  EXPECT_EQ(utilization.cpu_utilization_percent(), 12.5F);
  EXPECT_EQ(utilization.memory_utilization_mb(), 64.25F);
  EXPECT_EQ(utilization.memory_utilization_peak_mb(), 128U);
  EXPECT_EQ(utilization.io_writes(), 4096U);
  EXPECT_EQ(utilization.io_writes_kb(), 4U);
  EXPECT_EQ(utilization.io_reads(), 2048U);
  EXPECT_EQ(utilization.io_reads_kb(), 2U);
}

TEST_F(ProcessSectionTest, LeavesOutALoadThatIsNotFinite) {
  for (const float load : {std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
    WMIProcessInfo process = Measured("bad");
    process.cpu_percent = load;
    Add(process);
  }
  Add(Measured("good"));
  EXPECT_THAT(Names(), ElementsAre("good"));
}

TEST_F(ProcessSectionTest, LeavesOutAWorkingSetThatIsNotFinite) {
  for (const float working_set : {std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
    WMIProcessInfo process = Measured("bad");
    process.working_set = working_set;
    Add(process);
  }
  Add(Measured("good"));
  EXPECT_THAT(Names(), ElementsAre("good"));
}

TEST_F(ProcessSectionTest, LeavesOutAProcessWithoutProcessorTime) {
  WMIProcessInfo process = Measured("bad");
  process.cpu_time = 0;
  Add(process);
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(ProcessSectionTest, LeavesOutAProcessWithoutAPeak) {
  WMIProcessInfo process = Measured("bad");
  process.peak_working_set = 0;
  Add(process);
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(ProcessSectionTest, StopsAfterTwentyOfThoseItTakes) {
  for (int i = 0; i < 5; ++i) {
    WMIProcessInfo bad = Measured("bad");
    bad.cpu_time = 0;
    Add(bad);
  }
  for (int i = 1; i <= 25; ++i) Add(Measured("app" + std::to_string(i)));
  const std::vector<std::string> names = Names();
  ASSERT_EQ(names.size(), 20U);
  EXPECT_EQ(names.front(), "app1");
  EXPECT_EQ(names.back(), "app20");
}

TEST_F(ProcessSectionTest, LeavesAnUnknownStartTimeUnset) {
  WMIProcessInfo process = Measured("editor");
  process.start_time.clear();
  Add(process);
  Names();
  EXPECT_FALSE(section_.resource_intensive_processes_info(0).has_start_time());
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
