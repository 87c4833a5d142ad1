#include <gtest/gtest.h>

#include "platform/clock.h"

// The real zone of a machine without clock. Each suite runs in the zone that its name tells, set from outside.
namespace zt::tests {
namespace {

namespace platform = telemetry::collector::performancesamples::platform;

constexpr std::int64_t kJanuary15 = 1768478400;  // 2026-01-15T12:00:00Z
constexpr std::int64_t kJuly15 = 1784116800;     // 2026-07-15T12:00:00Z

TEST(SimulatedZoneNewYorkTest, TheStandardOffsetIsTheSameInSummer) {
  EXPECT_EQ(platform::LocalOffsetMinutes(kJanuary15), -300);
  EXPECT_EQ(platform::LocalOffsetMinutes(kJuly15), -240);
  EXPECT_EQ(platform::StandardOffsetMinutes(kJanuary15), -300);
  EXPECT_EQ(platform::StandardOffsetMinutes(kJuly15), -300);
}

// On 2026-03-08 and 2026-11-01 clocks change at 2 o'clock local time.
TEST(SimulatedZoneNewYorkTest, TheOffsetChangesWithTheSecondOfTheChange) {
  constexpr std::int64_t kSpring = 1772953200;  // 2026-03-08T07:00:00Z
  constexpr std::int64_t kAutumn = 1793512800;  // 2026-11-01T06:00:00Z
  EXPECT_EQ(platform::LocalOffsetMinutes(kSpring - 1), -300);
  EXPECT_EQ(platform::LocalOffsetMinutes(kSpring), -240);
  EXPECT_EQ(platform::LocalOffsetMinutes(kAutumn - 1), -240);
  EXPECT_EQ(platform::LocalOffsetMinutes(kAutumn), -300);
  for (const std::int64_t moment : {kSpring - 1, kSpring, kSpring + 3599, kAutumn - 3600, kAutumn - 1, kAutumn}) {
    EXPECT_EQ(platform::StandardOffsetMinutes(moment), -300) << moment;
  }
}

TEST(SimulatedZoneKolkataTest, AHalfHourIsKept) {
  EXPECT_EQ(platform::LocalOffsetMinutes(kJuly15), 330);
  EXPECT_EQ(platform::StandardOffsetMinutes(kJuly15), 330);
}

TEST(SimulatedZoneNewfoundlandTest, ANegativeHalfHourIsKeptAndDaylightSavingLeftOut) {
  EXPECT_EQ(platform::LocalOffsetMinutes(kJanuary15), -210);
  EXPECT_EQ(platform::LocalOffsetMinutes(kJuly15), -150);
  EXPECT_EQ(platform::StandardOffsetMinutes(kJanuary15), -210);
  EXPECT_EQ(platform::StandardOffsetMinutes(kJuly15), -210);
}

TEST(SimulatedZoneUtcTest, NothingIsAdded) {
  EXPECT_EQ(platform::LocalOffsetMinutes(kJuly15), 0);
  EXPECT_EQ(platform::StandardOffsetMinutes(kJuly15), 0);
}

TEST(SimulatedZoneFarEastTest, TheDayAfterIsNoOffsetOfADay) {
  EXPECT_EQ(platform::LocalOffsetMinutes(kJuly15), 780);
  EXPECT_EQ(platform::StandardOffsetMinutes(kJuly15), 780);
}

}  // namespace
}  // namespace zt::tests
