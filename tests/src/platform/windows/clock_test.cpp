#include "platform/clock.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <ctime>
#include <limits>

namespace zt::tests {
namespace {

namespace platform = telemetry::collector::performancesamples::platform;

constexpr std::int32_t kMinutesOfADay = 24 * 60;

TEST(ClockTest, TheCurrentTimeIsTheSystems) {
  const std::int64_t before = std::time(nullptr);
  const std::int64_t now = platform::CurrentTime();
  const std::int64_t after = std::time(nullptr);
  EXPECT_GE(now, before);
  EXPECT_LE(now, after);
}

TEST(ClockTest, TheOffsetOfNowIsWhatTheSystemsClocksDifferBy) {
  SYSTEMTIME utc{};
  SYSTEMTIME local{};
  ::GetSystemTime(&utc);
  ::GetLocalTime(&local);
  FILETIME utc_ticks{};
  FILETIME local_ticks{};
  ASSERT_TRUE(::SystemTimeToFileTime(&utc, &utc_ticks));
  ASSERT_TRUE(::SystemTimeToFileTime(&local, &local_ticks));
  const auto ticks = [](const FILETIME& time) {
    return static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32U | time.dwLowDateTime);
  };
  const double minutes = static_cast<double>(ticks(local_ticks) - ticks(utc_ticks)) / 600'000'000.0;
  EXPECT_NEAR(platform::LocalOffsetMinutes(platform::CurrentTime()), minutes, 0.1);
}

TEST(ClockTest, MomentsThatNoCalendarHasGiveAnOffset) {
  constexpr std::int64_t kYear1900 = -2'208'988'800;
  for (const std::int64_t moment :
       {std::numeric_limits<std::int64_t>::min(), std::int64_t{-11'644'473'601}, std::int64_t{-11'644'473'600},
        kYear1900, std::int64_t{-1}, std::int64_t{0}, std::int64_t{253'402'300'800}, std::int64_t{910'670'515'200},
        std::numeric_limits<std::int64_t>::max()}) {
    EXPECT_LT(std::abs(platform::LocalOffsetMinutes(moment)), kMinutesOfADay) << moment;
    EXPECT_LT(std::abs(platform::StandardOffsetMinutes(moment)), kMinutesOfADay) << moment;
  }
}

}  // namespace
}  // namespace zt::tests
