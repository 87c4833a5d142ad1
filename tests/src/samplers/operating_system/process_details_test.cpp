#include "samplers/operating_system/process_details.h"

#include "process_sampler_fixture.h"

// Status, elevation, start time and window of the processes that are reported.
namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using simulation::Failure;

class ProcessDetailsTest : public ProcessSamplerTest {
 protected:
  ProcessDetailsTest() : process_(AddProcess(12, 50)) {}

  std::string SampleStatus() { return SampleOnly().status(); }
  bool SampleWindow(std::vector<simulation::Window> windows) {
    process_.windows = std::move(windows);
    const auto& process = SampleOnly();
    EXPECT_TRUE(process.has_has_window_title());
    return process.has_window_title();
  }

  simulation::Process& process_;  // the only one, until another is added
};

TEST_F(ProcessDetailsTest, AProcessThatHasNotEndedIsRunning) {
  process_.exit_code = 259U;
  process_.wait = 258U;
  EXPECT_EQ(SampleStatus(), "running");
}

TEST_F(ProcessDetailsTest, AProcessWithAnExitCodeIsTerminated) {
  process_.exit_code = 0U;
  EXPECT_EQ(SampleStatus(), "terminated");
}

TEST_F(ProcessDetailsTest, AProcessThatEndedWithTheCodeOfActiveOnesIsTerminated) {
  process_.wait = 0U;
  EXPECT_EQ(SampleStatus(), "terminated");
}

TEST_F(ProcessDetailsTest, AnAbandonedWaitIsAProcessThatDoesNotRespond) {
  process_.wait = 128U;
  EXPECT_EQ(SampleStatus(), "notResponding");
}

TEST_F(ProcessDetailsTest, AnyOtherResultOfTheWaitLeavesTheStatusUnknown) {
  process_.wait = 1U;
  EXPECT_EQ(SampleStatus(), "unknown");
}

TEST_F(ProcessDetailsTest, ARefusedWaitLeavesTheStatusUnknown) {
  process_.wait = kRefused;
  EXPECT_EQ(SampleStatus(), "unknown");
}

TEST_F(ProcessDetailsTest, ARefusedExitCodeLeavesTheStatusUnknown) {
  process_.exit_code = kRefused;
  EXPECT_EQ(SampleStatus(), "unknown");
}

TEST_F(ProcessDetailsTest, TellsAnElevatedProcess) {
  process_.elevated = true;
  EXPECT_TRUE(SampleOnly().is_elevated());
}

TEST_F(ProcessDetailsTest, TellsAProcessThatIsNotElevated) {
  const auto& process = SampleOnly();
  EXPECT_TRUE(process.has_is_elevated());
  EXPECT_FALSE(process.is_elevated());
}

TEST_F(ProcessDetailsTest, AProcessWhoseTokenIsRefusedIsNotElevated) {
  process_.elevated = true;
  process_.token = kRefused;
  EXPECT_FALSE(SampleOnly().is_elevated());
}

TEST_F(ProcessDetailsTest, AProcessWhoseTokenDoesNotTellIsNotElevated) {
  process_.elevated = kRefused;
  EXPECT_FALSE(SampleOnly().is_elevated());
}

TEST_F(ProcessDetailsTest, TellsTheLocalStartTime) {
  EXPECT_EQ(SampleOnly().start_time(), "2026-03-07T12:00:00-02:00");
}

TEST_F(ProcessDetailsTest, AStartTimeThatIsNotToldStaysUnset) {
  ChangeBetweenThePasses([](simulation::Machine& machine) { machine.processes[0].times = kRefused; });
  const auto& process = SampleOnly();
  EXPECT_FALSE(process.has_start_time());
  EXPECT_EQ(process.status(), "running");
}

TEST_F(ProcessDetailsTest, AProcessWithoutWindowsHasNoTitle) {
  EXPECT_FALSE(SampleWindow({}));
}

TEST_F(ProcessDetailsTest, AVisibleWindowWithATextIsATitle) {
  EXPECT_TRUE(SampleWindow({{true, false, "Letter"}}));
}

TEST_F(ProcessDetailsTest, AHiddenFirstWindowDecidesAgainstATitle) {
  EXPECT_FALSE(SampleWindow({{false, false, "Hidden"}, {true, false, "Letter"}}));
}

TEST_F(ProcessDetailsTest, AnOwnedFirstWindowDecidesAgainstATitle) {
  EXPECT_FALSE(SampleWindow({{true, true, "Dialog"}, {true, false, "Letter"}}));
}

TEST_F(ProcessDetailsTest, AWindowWithoutATextLetsTheNextOneDecide) {
  EXPECT_TRUE(SampleWindow({{true, false, ""}, {true, false, "Letter"}, {false, false, ""}}));
}

TEST_F(ProcessDetailsTest, AHiddenWindowAfterOneWithoutATextDecidesAgainstATitle) {
  EXPECT_FALSE(SampleWindow({{true, false, ""}, {false, false, "Hidden"}, {true, false, "Letter"}}));
}

TEST_F(ProcessDetailsTest, WindowsWithoutATextAreNoTitle) {
  EXPECT_FALSE(SampleWindow({{true, false, ""}, {true, false, ""}}));
}

TEST_F(ProcessDetailsTest, ATitleOfAnyScriptIsATitle) {
  EXPECT_TRUE(SampleWindow({{true, false, "手紙🖊"}}));
}

TEST_F(ProcessDetailsTest, ATitleLongerThanItsRoomIsATitle) {
  EXPECT_TRUE(SampleWindow({{true, false, std::string(5'000, 'L')}}));
}

TEST_F(ProcessDetailsTest, TheWindowsOfOtherProcessesDoNotCount) {
  simulation::Process& other = AddToSystem(34);
  other.windows = {{true, false, "Letter"}};
  EXPECT_FALSE(SampleOnly().has_window_title());
}

TEST_F(ProcessDetailsTest, AProcessThatEndsBetweenThePassesAndIsGoneEndsThePass) {
  ChangeBetweenThePasses([](simulation::Machine& machine) { machine.processes.clear(); });
  EXPECT_EQ(SampleAndFail(), "Unable to open process. ProcessId: ");
  EXPECT_THAT(Names(), IsEmpty());
  EXPECT_TRUE(Section().operating_session_info().has_time_since_last_logon_minutes());
}

TEST_F(ProcessDetailsTest, AProcessThatEndsBetweenThePassesAndIsStillThereIsTerminated) {
  ChangeBetweenThePasses([](simulation::Machine& machine) {
    machine.processes[0].exit_code = 1U;
    machine.processes[0].wait = 0U;
  });
  EXPECT_EQ(SampleStatus(), "terminated");
}

TEST_F(ProcessDetailsTest, AProcessThatCannotBeOpenedAgainCostsAllProcessesOfTheRecord) {
  AddProcess(34, 40, "other").open_for_query = kRefused;
  EXPECT_EQ(SampleAndFail(), "Unable to open process. ProcessId: ");
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(ProcessDetailsTest, ATextThatIsNoIdIsOfNoProcess) {
  simulation::UseMachine(machine_);
  for (const char* text : {"", "12x", "-12", "4294967308"}) {
    WMIProcessInfo asked;
    asked.process_id = text;
    EXPECT_ANY_THROW(FillDetails(asked)) << text;
  }
  WMIProcessInfo process;
  process.process_id = "12";
  EXPECT_NO_THROW(FillDetails(process));
}

TEST_F(ProcessDetailsTest, AFailingDetailOfOneProcessLeavesTheOthersAlone) {
  process_.exit_code = kRefused;
  process_.token = kRefused;
  AddProcess(34, 40, "other").elevated = true;
  const OperatingSystemSection& section = Sample();
  ASSERT_THAT(Names(), ElementsAre("app", "other"));
  EXPECT_EQ(section.resource_intensive_processes_info(1).status(), "running");
  EXPECT_TRUE(section.resource_intensive_processes_info(1).is_elevated());
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
