#include "platform/clock.h"

#include <gtest/gtest.h>

#include <ctime>
#include <utility>

#include "simulation/machine.h"

namespace zt::tests {
namespace {

namespace platform = telemetry::collector::performancesamples::platform;
using simulation::Clock;
using simulation::Machine;

void UseClock(std::optional<Clock> clock) {
  Machine machine;
  machine.clock = clock;
  simulation::UseMachine(std::move(machine));
}

TEST(SimulatedClockTest, AStatedMomentStandsStill) {
  UseClock(Clock{1772893242, -180, -120});
  EXPECT_EQ(platform::CurrentTime(), 1772893242);
  EXPECT_EQ(platform::CurrentTime(), 1772893242);
}

TEST(SimulatedClockTest, StatedOffsetsHoldAtAnyMoment) {
  UseClock(Clock{1772893242, -180, -120});
  EXPECT_EQ(platform::StandardOffsetMinutes(0), -180);
  EXPECT_EQ(platform::LocalOffsetMinutes(0), -120);
  EXPECT_EQ(platform::LocalOffsetMinutes(4'000'000'000), -120);
}

TEST(SimulatedClockTest, AZoneWithoutAMomentHasTheRealTime) {
  UseClock(Clock{std::nullopt, 345, 345});
  const std::time_t before = std::time(nullptr);
  const std::int64_t now = platform::CurrentTime();
  EXPECT_LE(before, now);
  EXPECT_LE(now, std::time(nullptr));
  EXPECT_EQ(platform::LocalOffsetMinutes(now), 345);
}

TEST(SimulatedClockTest, AMachineWithoutClockHasTheRealTime) {
  UseClock(std::nullopt);
  const std::time_t before = std::time(nullptr);
  const std::int64_t now = platform::CurrentTime();
  EXPECT_LE(before, now);
  EXPECT_LE(now, std::time(nullptr));
}

TEST(SimulatedClockTest, AMomentBeyondAnyCalendarHasNoOffset) {
  UseClock(std::nullopt);
  EXPECT_EQ(platform::LocalOffsetMinutes(std::numeric_limits<std::int64_t>::max()), 0);
  EXPECT_EQ(platform::StandardOffsetMinutes(std::numeric_limits<std::int64_t>::max()), 0);
}

}  // namespace
}  // namespace zt::tests
