#include "host/utc_time.h"

#include <gmock/gmock.h>

namespace zt::telemetry::host {
namespace {

using std::chrono::seconds;
using std::chrono::sys_seconds;

constexpr sys_seconds kAfternoon{seconds(1'772'892'030)};  // 2026-03-07T14:00:30Z

TEST(UtcTimeTest, ATimeIsReadInEachOfItsForms) {
  for (const char* text :
       {"2026-03-07T14:00:30Z", "2026-03-07T14:00:30", "2026-03-07 14:00:30", "2026-03-07 14:00:30Z"}) {
    EXPECT_EQ(ParseUtcTime(text), kAfternoon) << text;
  }
}

TEST(UtcTimeTest, SecondsAndTheTimeOfTheDayCanBeLeftOut) {
  EXPECT_EQ(ParseUtcTime("2026-03-07T14:00"), kAfternoon - seconds(30));
  EXPECT_EQ(ParseUtcTime("2026-03-07T14:00Z"), kAfternoon - seconds(30));
  EXPECT_EQ(ParseUtcTime("2026-03-07"), kAfternoon - seconds(14 * 3600 + 30));
}

TEST(UtcTimeTest, ADateThatTheCalendarDoesNotHaveIsRefused) {
  EXPECT_EQ(ParseUtcTime("2026-02-29"), std::nullopt);
  EXPECT_EQ(ParseUtcTime("2026-04-31"), std::nullopt);
  EXPECT_EQ(ParseUtcTime("2026-00-10"), std::nullopt);
  EXPECT_NE(ParseUtcTime("2028-02-29"), std::nullopt);
}

TEST(UtcTimeTest, ATimeOfTheDayOutOfRangeIsRefused) {
  EXPECT_EQ(ParseUtcTime("2026-03-07T24:00:00"), std::nullopt);
  EXPECT_EQ(ParseUtcTime("2026-03-07T23:60"), std::nullopt);
  EXPECT_EQ(ParseUtcTime("2026-03-07T23:59:60"), std::nullopt);
}

TEST(UtcTimeTest, AnOffsetAFractionOrAnythingElseIsRefused) {
  for (const char* text : {"", "now", "2026", "2026-3-7", "26-03-07", "2026-03-07T", "2026-03-07T14",
                           "2026-03-07T14:00+01:00", "2026-03-07T14:00:30.000Z", "2026-03-07T14:00:30ZZ", "2026-03-07Z",
                           " 2026-03-07", "-026-03-07", "2026-03-+7", "2026/03/07"}) {
    EXPECT_EQ(ParseUtcTime(text), std::nullopt) << text;
  }
}

TEST(UtcTimeTest, ATimeIsWrittenWithMillisecondsAndTheZoneLetter) {
  EXPECT_EQ(FormatUtcTime(kAfternoon), "2026-03-07T14:00:30.000Z");
}

TEST(UtcTimeTest, TimesBefore1970AndOfTheFirstYearKeepFourDigits) {
  EXPECT_EQ(FormatUtcTime(sys_seconds(seconds(-1))), "1969-12-31T23:59:59.000Z");
  EXPECT_EQ(FormatUtcTime(*ParseUtcTime("0001-01-01")), "0001-01-01T00:00:00.000Z");
}

}  // namespace
}  // namespace zt::telemetry::host
