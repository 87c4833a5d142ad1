#include "samplers/operating_system/start_time_text.h"

#include <gtest/gtest.h>

#include "simulation/machine.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

constexpr std::int64_t kSecond = 10'000'000;  // of 100 ns
constexpr std::int64_t kMinute = 60 * kSecond;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kMidnight = 1'772'841'600 * kSecond;  // 2026-03-07T00:00:00Z

// The text in a zone.
std::string TextAt(std::int32_t offset_minutes, std::int64_t created_100ns) {
  simulation::Machine machine;
  machine.clock = simulation::Clock{0, offset_minutes, offset_minutes};
  simulation::UseMachine(std::move(machine));
  return StartTimeText(created_100ns);
}

TEST(StartTimeTextTest, IsLocalTimeAndTheOffsetWhenBothClocksShowTheSameDay) {
  EXPECT_EQ(TextAt(-180, kMidnight + 13 * kHour), "2026-03-07T10:00:00-03:00");
  EXPECT_EQ(TextAt(60, kMidnight + 13 * kHour), "2026-03-07T14:00:00+01:00");
}

TEST(StartTimeTextTest, IsUtcWithAPlusInAZoneWithoutAnOffset) {
  EXPECT_EQ(TextAt(0, kMidnight + 13 * kHour + 5 * kMinute + 9 * kSecond), "2026-03-07T13:05:09+00:00");
}

TEST(StartTimeTextTest, TakesTheHoursDifferenceWithoutRegardToTheDateOfTheDayBefore) {
  EXPECT_EQ(TextAt(-180, kMidnight + kHour + 30 * kMinute), "2026-03-06T22:30:00+21:00");
}

TEST(StartTimeTextTest, TakesTheHoursDifferenceWithoutRegardToTheDateOfTheDayAfter) {
  EXPECT_EQ(TextAt(120, kMidnight + 23 * kHour), "2026-03-08T01:00:00-22:00");
}

TEST(StartTimeTextTest, TakesTheMinutesDifferenceWithoutACarryFromTheHours) {
  EXPECT_EQ(TextAt(330, kMidnight + 10 * kHour + 15 * kMinute), "2026-03-07T15:45:00+05:30");
  EXPECT_EQ(TextAt(330, kMidnight + 10 * kHour + 45 * kMinute), "2026-03-07T16:15:00+06:30");
  EXPECT_EQ(TextAt(-210, kMidnight + 10 * kHour + 15 * kMinute), "2026-03-07T06:45:00-04:30");
  EXPECT_EQ(TextAt(345, kMidnight + 10 * kHour + 30 * kMinute), "2026-03-07T16:15:00+06:15");
}

TEST(StartTimeTextTest, TheSignIsThatOfTheHoursAlone) {
  EXPECT_EQ(TextAt(-30, kMidnight + 10 * kHour + 45 * kMinute), "2026-03-07T10:15:00+00:30");
}

TEST(StartTimeTextTest, DropsFractionsOfASecond) {
  EXPECT_EQ(TextAt(0, kMidnight + kSecond - 1), "2026-03-07T00:00:00+00:00");
}

TEST(StartTimeTextTest, KnowsLeapDays) {
  EXPECT_EQ(TextAt(0, 1'709'164'800 * kSecond), "2024-02-29T00:00:00+00:00");
}

TEST(StartTimeTextTest, IsEmptyBefore1970) {
  EXPECT_EQ(TextAt(0, -1), "");
  EXPECT_EQ(TextAt(0, -116'444'736'000'000'000), "");  // what a process without a creation time has
  EXPECT_EQ(TextAt(0, std::numeric_limits<std::int64_t>::min()), "");
}

TEST(StartTimeTextTest, BeginsWith1970AndItsLocalTimeMayBeTheYearBefore) {
  EXPECT_EQ(TextAt(0, 0), "1970-01-01T00:00:00+00:00");
  EXPECT_EQ(TextAt(-60, 0), "1969-12-31T23:00:00+23:00");
}

TEST(StartTimeTextTest, IsEmptyAfterTheYear9999) {
  EXPECT_EQ(TextAt(840, 253'402'214'399 * kSecond), "9999-12-31T13:59:59-10:00");
  EXPECT_EQ(TextAt(0, 253'402'300'800 * kSecond), "");
  EXPECT_EQ(TextAt(0, std::numeric_limits<std::int64_t>::max()), "");
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
