#include "messages/local_time.h"

#include <gtest/gtest.h>

#include "messages/perf_messages.h"
#include "simulation/machine.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

// 2026-03-07T14:20:42Z
constexpr std::int64_t kMoment = 1772893242;

void UseZone(std::int32_t standard_offset_minutes, std::int32_t local_offset_minutes) {
  simulation::Machine machine;
  machine.clock = simulation::Clock{kMoment, standard_offset_minutes, local_offset_minutes};
  simulation::UseMachine(machine);
}

TEST(OffsetFormTest, IsTheLocalWallClockWithTheZonesOffset) {
  UseZone(-180, -180);
  EXPECT_EQ(CurrentOffsetForm(), "2026-03-07T11:20:42-03:00");
}

TEST(OffsetFormTest, ShowsTheStandardOffsetWhileTheWallClockHasDaylightSaving) {
  UseZone(-180, -120);
  EXPECT_EQ(CurrentOffsetForm(), "2026-03-07T12:20:42-03:00");
}

TEST(OffsetFormTest, DropsTheMinutesOfTheOffset) {
  UseZone(330, 330);
  EXPECT_EQ(CurrentOffsetForm(), "2026-03-07T19:50:42+05:00");
}

TEST(OffsetFormTest, CutsNegativeHalfHoursTowardZero) {
  UseZone(-210, -150);
  EXPECT_EQ(CurrentOffsetForm(), "2026-03-07T11:50:42-03:00");
}

TEST(OffsetFormTest, HasAPlusForAnOffsetOfLessThanAnHour) {
  UseZone(-30, -30);
  EXPECT_EQ(CurrentOffsetForm(), "2026-03-07T13:50:42+00:00");
}

TEST(OffsetFormTest, IsPlusZeroInUtc) {
  UseZone(0, 0);
  EXPECT_EQ(CurrentOffsetForm(), "2026-03-07T14:20:42+00:00");
}

TEST(OffsetFormTest, CrossesMidnightIntoTheLocalDay) {
  UseZone(840, 840);
  EXPECT_EQ(CurrentOffsetForm(), "2026-03-08T04:20:42+14:00");
}

TEST(OffsetFormTest, OfTheEpochIsItsFirstSecond) {
  UseZone(0, 0);
  EXPECT_EQ(OffsetForm(0), "1970-01-01T00:00:00+00:00");
  EXPECT_EQ(OffsetForm(-1), "1969-12-31T23:59:59+00:00");
}

TEST(OffsetFormTest, KnowsLeapDays) {
  UseZone(0, 0);
  EXPECT_EQ(OffsetForm(1709164800), "2024-02-29T00:00:00+00:00");
}

TEST(OffsetFormTest, HasFiveDigitsForAYearBeyond9999) {
  UseZone(0, 0);
  EXPECT_EQ(OffsetForm(253402300800), "10000-01-01T00:00:00+00:00");
}

TEST(OffsetFormTest, IsEmptyBeforeTheYear1900) {
  UseZone(0, 0);
  EXPECT_EQ(OffsetForm(-2208988800), "1900-01-01T00:00:00+00:00");
  EXPECT_EQ(OffsetForm(-2208988801), "");
  EXPECT_EQ(OffsetForm(std::numeric_limits<std::int64_t>::min()), "");
}

TEST(OffsetFormTest, IsEmptyBeyondTheCalendar) {
  UseZone(0, 0);
  EXPECT_EQ(OffsetForm(std::numeric_limits<std::int64_t>::max()), "");
}

TEST(OffsetFormTest, OfTheRealClockCanBeTurnedIntoARecordTime) {
  simulation::UseMachine({});
  const std::string offset_form = CurrentOffsetForm();
  ASSERT_EQ(offset_form.size(), std::string("2026-03-07T14:20:42+00:00").size());
  EXPECT_EQ(RecordForm(offset_form), offset_form.substr(0, 19) + ".000Z");
}

TEST(RecordFormTest, KeepsTheWallClockDigitsAndDropsTheOffset) {
  EXPECT_EQ(PerfMessages::GetCurrentLocalTime("2025-07-15T12:20:42-03:00"), "2025-07-15T12:20:42.000Z");
  EXPECT_EQ(PerfMessages::GetCurrentLocalTime("2025-07-15T23:59:59+14:00"), "2025-07-15T23:59:59.000Z");
}

TEST(RecordFormTest, RefusesAnOffsetWithoutColon) {
  EXPECT_EQ(RecordForm("2025-07-15T12:20:42-0300"), "");
}

TEST(RecordFormTest, RefusesTrailingCharacters) {
  EXPECT_EQ(RecordForm("2025-07-15T12:20:42-03:00 "), "");
  EXPECT_EQ(RecordForm("2025-07-15T12:20:42-03:00\n"), "");
}

TEST(RecordFormTest, RefusesTextsOfAnotherForm) {
  for (const char* text : {"", "now", "2025-07-15 12:20:42-03:00", "2025-07-15T12:20:42", "2025-07-15T12:20:42Z",
                           " 2025-07-15T12:20:42-03:00", "2025-7-15T12:20:42-03:00"}) {
    EXPECT_EQ(RecordForm(text), "") << text;
  }
}

TEST(RecordFormTest, RefusesEachSignThatTheFormHasNotInItsPlace) {
  const std::string form = "2025-07-15T12:20:42-03:00";
  for (std::size_t place = 0; place < form.size(); ++place) {
    for (const char sign : {'/', ':', '-', 'x', '\0'}) {
      std::string text = form;
      if (text[place] == sign) continue;
      text[place] = sign;
      EXPECT_EQ(RecordForm(text), "") << text;
    }
  }
}

TEST(RecordFormTest, RefusesFieldsOutOfRange) {
  for (const char* text : {"2025-00-15T12:20:42-03:00", "2025-13-15T12:20:42-03:00", "2025-07-00T12:20:42-03:00",
                           "2025-07-32T12:20:42-03:00", "2025-07-15T24:20:42-03:00", "2025-07-15T12:60:42-03:00",
                           "2025-07-15T12:20:62-03:00", "1899-12-31T23:59:59+00:00"}) {
    EXPECT_EQ(RecordForm(text), "") << text;
  }
}

TEST(RecordFormTest, CountsADayThatItsMonthLacksIntoTheNextMonth) {
  EXPECT_EQ(RecordForm("2025-02-30T12:20:42-03:00"), "2025-03-02T12:20:42.000Z");
}

TEST(RecordFormTest, CountsALeapSecondIntoTheNextMinute) {
  EXPECT_EQ(RecordForm("2016-12-31T23:59:60+00:00"), "2017-01-01T00:00:00.000Z");
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
