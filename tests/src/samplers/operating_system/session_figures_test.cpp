#include "process_sampler_fixture.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

class SessionFiguresTest : public ProcessSamplerTest {
 protected:
  const auto& SampleSession() { return Sample().operating_session_info(); }
};

TEST_F(SessionFiguresTest, CountsWholeMinutesSinceTheStartAndSinceTheLastInput) {
  machine_.session = {{7'259'999, 7'259'999}, 0, 7'140'000U};
  const auto& session = SampleSession();
  EXPECT_EQ(session.time_since_last_boot_minutes(), 120.0F);
  EXPECT_EQ(session.time_since_last_logon_minutes(), 1.0F);
}

TEST_F(SessionFiguresTest, ReadsTheClockOnceBeforeTheLastInputAndOnceAfterIt) {
  machine_.session = {{60'000, 360'000, 9'000'000}, 0, 60'000U};
  const auto& session = SampleSession();
  EXPECT_EQ(session.time_since_last_boot_minutes(), 1.0F);
  EXPECT_EQ(session.time_since_last_logon_minutes(), 5.0F);
}

TEST_F(SessionFiguresTest, TellsTheTouchContactsInThePlaceOfTheInputDelay) {
  EXPECT_EQ(SampleSession().max_user_input_delay_ms(), 10U);
}

TEST_F(SessionFiguresTest, AMachineWithoutATouchScreenTellsZeroContacts) {
  machine_.session.maximum_touches = 0;
  const auto& session = SampleSession();
  EXPECT_TRUE(session.has_max_user_input_delay_ms());
  EXPECT_EQ(session.max_user_input_delay_ms(), 0U);
}

TEST_F(SessionFiguresTest, CountsTheMinutesSinceTheLastInputAcrossTheWrapOfItsTick) {
  machine_.session = {{0x1'0000'0000 + 60'000}, 0, 0xFFFF'FFFF - 59'999U};
  const auto& session = SampleSession();
  EXPECT_EQ(session.time_since_last_logon_minutes(), 2.0F);
  EXPECT_EQ(session.time_since_last_boot_minutes(), 71583.0F);  // does not wrap
}

TEST_F(SessionFiguresTest, ALastInputAfterTheClockWasReadWraps) {
  machine_.session = {{1'000}, 0, 1'001U};
  EXPECT_EQ(SampleSession().time_since_last_logon_minutes(), 71582.0F);  // (2^32 - 1) / 60000
}

TEST_F(SessionFiguresTest, CountsMoreMinutesThan32BitsHold) {
  machine_.session.tick_counts_ms = {60'000ULL * 4'294'967'296};
  EXPECT_EQ(SampleSession().time_since_last_boot_minutes(), 4294967296.0F);
}

TEST_F(SessionFiguresTest, AnUnknownLastInputEndsThePassWithItsText) {
  machine_.session.last_input_tick_ms = kRefused;
  EXPECT_EQ(SampleAndFail(), "Unable to get last input information.");
}

TEST_F(SessionFiguresTest, AnUnknownLastInputLeavesTheTouchContactsAndNothingElse) {
  AddProcess(12, 50);
  machine_.session.last_input_tick_ms = kRefused;
  SampleAndFail();
  const auto& session = Section().operating_session_info();
  EXPECT_EQ(session.max_user_input_delay_ms(), 10U);
  EXPECT_FALSE(session.has_time_since_last_boot_minutes());
  EXPECT_FALSE(session.has_time_since_last_logon_minutes());
  EXPECT_EQ(Section().resource_intensive_processes_info_size(), 0);
  EXPECT_TRUE(simulation::RecordedQueries().empty());
}

TEST_F(SessionFiguresTest, AMachineWithoutASessionHasNoLastInput) {
  machine_.session = {};
  EXPECT_EQ(SampleAndFail(), "Unable to get last input information.");
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
