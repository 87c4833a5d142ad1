#include "process_sampler_fixture.h"
#include "support/status_codes.h"

// The process sampler as part of a cycle. What it throws is a pointer to what it keeps: the sanitizers' builds tell of
// a cycle that deletes it, and of a sampler that loses it.
namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::Contains;
using testing::Not;

constexpr char kThrownPointer[] = "Error handling message. Details: Unknown exception type.";

class ProcessSamplerCycleTest : public ProcessSamplerTest {
 protected:
  const OperatingSystemSection& Collect() {
    simulation::UseMachine(machine_);
    Execute(50);
    return OnlySent().operating_system_info();
  }
};

TEST_F(ProcessSamplerCycleTest, SendsTheSessionAndTheProcesses) {
  AddProcess(12, 50, "editor");
  const OperatingSystemSection& section = Collect();
  EXPECT_EQ(section.operating_session_info().time_since_last_boot_minutes(), 60.0F);
  EXPECT_EQ(section.operating_session_info().time_since_last_logon_minutes(), 1.0F);
  ASSERT_EQ(section.resource_intensive_processes_info_size(), 1);
  EXPECT_EQ(section.resource_intensive_processes_info(0).executable_file_id(), "editor");
  EXPECT_THAT(log_.Messages(), Not(Contains(kThrownPointer)));
}

TEST_F(ProcessSamplerCycleTest, LogsAnUnknownLastInputAndSendsTheRecord) {
  machine_.session.last_input_tick_ms = kRefused;
  EXPECT_EQ(Collect().operating_session_info().max_user_input_delay_ms(), 10U);
  EXPECT_THAT(log_.Messages(plog::error), Contains(kThrownPointer).Times(1));
}

TEST_F(ProcessSamplerCycleTest, LogsAFailedListAndSendsTheSession) {
  machine_.wmi.failures = {{kListedClass, tests::kAccessDenied, std::nullopt, 0}};
  EXPECT_EQ(Collect().operating_session_info().time_since_last_boot_minutes(), 60.0F);
  EXPECT_THAT(log_.Messages(plog::error), Contains(kThrownPointer).Times(1));
}

TEST_F(ProcessSamplerCycleTest, SaysThatTheListDidNotComeInTime) {
  machine_.wmi.failures = {{kListedClass, shared::wmi::kTimedOut, std::nullopt, 0}};
  EXPECT_EQ(Collect().resource_intensive_processes_info_size(), 0);
  EXPECT_THAT(log_.Messages(plog::warning),
              Contains("No process is reported: the performance data of processes did not come in time").Times(1));
}

TEST_F(ProcessSamplerCycleTest, LogsAProcessThatIsGoneAndSendsTheSession) {
  AddProcess(12, 50).open_for_query = kRefused;
  const OperatingSystemSection& section = Collect();
  EXPECT_TRUE(section.has_operating_session_info());
  EXPECT_EQ(section.resource_intensive_processes_info_size(), 0);
  EXPECT_THAT(log_.Messages(plog::error), Contains(kThrownPointer).Times(1));
}

TEST_F(ProcessSamplerCycleTest, ThrowsTheSameExceptionAtEachFailureAndKeepsIt) {
  machine_.session.last_input_tick_ms = kRefused;
  const std::exception* const first = SampleAndCatch();
  const std::exception* const second = SampleAndCatch();
  EXPECT_EQ(first, second);
  machine_.session.last_input_tick_ms = 0U;
  machine_.wmi.failures = {{kListedClass, tests::kAccessDenied, std::nullopt, 0}};
  const std::exception* const other = SampleAndCatch();
  ASSERT_NE(first, nullptr);
  ASSERT_NE(other, nullptr);
  EXPECT_STREQ(first->what(), "Unable to get last input information.");
  EXPECT_STREQ(other->what(), "Error while querying Win32_PerFormattedData_PerfProc_Process.");
}

TEST_F(ProcessSamplerCycleTest, ASecondCycleReportsAfreshAndNotInAddition) {
  AddProcess(12, 50, "editor");
  simulation::UseMachine(machine_);
  Execute(50);
  Execute(50);
  ASSERT_EQ(sink_->sent.size(), 2U);
  EXPECT_EQ(sink_->sent[1].operating_system_info().resource_intensive_processes_info_size(), 1);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
