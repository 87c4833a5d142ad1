#include "platform/session_clock.h"

#include <windows.h>
#include <gtest/gtest.h>

#include "platform/session_number.h"

// The session of this very system.
namespace zt::telemetry::collector::performancesamples::platform {
namespace {

TEST(SessionClockTest, TheTickCountGrowsByTheMillisecondsThatPass) {
  const std::uint64_t before = TickCountMs();
  ::Sleep(100);
  const std::uint64_t passed = TickCountMs() - before;
  EXPECT_GE(passed, 80U);
  EXPECT_LT(passed, 10'000U);
}

TEST(SessionClockTest, TheTickCountIsThatOfTheSystem) {
  const std::uint64_t before = ::GetTickCount64();
  const std::uint64_t ticks = TickCountMs();
  EXPECT_GE(ticks, before);
  EXPECT_LE(ticks, ::GetTickCount64());
}

TEST(SessionClockTest, TheTouchContactsAreTheSystemsMetric95) {
  EXPECT_EQ(MaximumTouches(), static_cast<std::uint32_t>(::GetSystemMetrics(95)));
}

TEST(SessionNumberTest, IsThatOfTheProcess) {
  DWORD number = 99;
  ASSERT_NE(::ProcessIdToSessionId(::GetCurrentProcessId(), &number), FALSE);
  EXPECT_EQ(SessionNumber(), number);
}

TEST(SessionClockTest, TheLastInputWasNotAfterNow) {
  const auto last_input = LastInputTickMs();
  ASSERT_TRUE(last_input);
  EXPECT_LE(*last_input, static_cast<std::uint32_t>(TickCountMs()));
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples::platform
