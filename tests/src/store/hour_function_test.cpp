#include "store/hour_function.h"

#include <gmock/gmock.h>

#include <cstdio>

#include "store/sqlite_handles.h"
#include "store_test.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::IsEmpty;

/// The function beside SQLite's own, on a connection each.
class HourFunctionTest : public StoreTest {
 protected:
  HourFunctionTest() { EXPECT_TRUE(UseFastHours(fast_.Handle())); }

  static std::string Hour(tests::SampleStore& store, const std::string& literal) {
    return store.Value("SELECT quote(strftime('%Y-%m-%dT%H:00:00.000Z', substr(" + literal + ", 1, 19)))");
  }

  void ExpectTheSame(const std::string& literal) { EXPECT_EQ(Hour(fast_, literal), Hour(own_, literal)) << literal; }

  tests::SampleStore fast_{folder_.File("fast.db")};
  tests::SampleStore own_{folder_.File("own.db")};
};

TEST_F(HourFunctionTest, AnHourIsThatOfItsTime) {
  EXPECT_EQ(Hour(fast_, "'2026-03-07T12:34:56.789Z'"), "'2026-03-07T12:00:00.000Z'");
  EXPECT_EQ(Hour(fast_, "'2026-03-07 12:34:56'"), "'2026-03-07T12:00:00.000Z'");
}

TEST_F(HourFunctionTest, EveryDayOfTheYearsGivesTheHoursOfSqlite) {
  for (const int year : {0, 1, 4, 100, 400, 1582, 1600, 1900, 1999, 2000, 2023, 2024, 2100, 9999}) {
    for (int month = 0; month <= 13; ++month) {
      for (int day = 0; day <= 32; ++day) {
        char time[64];
        std::snprintf(time, sizeof time, "'%04d-%02d-%02dT%02d:59:59'", year, month, day, (month + day) % 26);
        ExpectTheSame(time);
      }
    }
  }
}

TEST_F(HourFunctionTest, OddTimesGiveWhatSqliteMakesOfThem) {
  for (const char* literal : {"'2026-03-07T24:00:00'",
                              "'2026-12-31T24:59:59'",
                              "'2026-03-07T25:00:00'",
                              "'2026-03-07T12:60:00'",
                              "'2026-03-07T12:00:60'",
                              "'2026-03-07  12:00:00'",
                              "'2026-03-07TT2:00:00'",
                              "'2026-03-07t12:00:00'",
                              "'2026-03-07T12:00'",
                              "'2026-03-07T12:00Z'",
                              "'2026-03-07T12:00+05:30'",
                              "'2026-03-07'",
                              "'12:34'",
                              "'2026-3-7T12:00:00'",
                              "'2026/03/07 12:00:00'",
                              "'-001-03-07T12:00:00'",
                              "'-4713-12-01T12:00:00'",
                              "'2461107.5'",
                              "2461107.5",
                              "1772884800",
                              "''",
                              "NULL",
                              "x'323032362d30332d30375431323a30303a3030'",
                              "'yesterday'",
                              "'\u0663'",
                              "char(0)",
                              "'2026-03-07T12:00:00' || char(0)",
                              "'2026-03-07T12:0' || char(0) || ':00'"}) {
    ExpectTheSame(literal);
  }
}

TEST_F(HourFunctionTest, OtherFormatsAreAnsweredToo) {
  EXPECT_EQ(fast_.Value("SELECT strftime('%s', '2026-03-07T12:34:56')"), "1772886896");
  EXPECT_THAT(fast_.Value("SELECT strftime(NULL, '2026-03-07T12:34:56')"), IsEmpty());
  EXPECT_EQ(fast_.Value("SELECT strftime('%H', '2026-03-07T12:34:56', '+1 hour')"), "13");
}

TEST_F(HourFunctionTest, TheMomentOfReadingIsRefusedAndTheNextTimeIsNot) {
  for (const char* now : {"now", "NOW"}) {
    EXPECT_FALSE(sqlite3_exec(fast_.Handle(), ("SELECT strftime('%H', '" + std::string(now) + "')").c_str(), nullptr,
                              nullptr, nullptr) == SQLITE_OK);
    ExpectTheSame("'2026-02-31T12:00:00'");
  }
}

TEST_F(HourFunctionTest, TextsOfADatabaseInUtf16AreReadAlike) {
  tests::SampleStore wide(folder_.File("wide.db"));
  wide.Execute("PRAGMA encoding='UTF-16le'");
  wide.Execute("CREATE TABLE times(t)");
  ASSERT_TRUE(UseFastHours(wide.Handle()));
  EXPECT_EQ(Hour(wide, "'2026-03-07T12:34:56'"), "'2026-03-07T12:00:00.000Z'");
  EXPECT_EQ(Hour(wide, "'2026-03-07T24:34:56'"), Hour(own_, "'2026-03-07T24:34:56'"));
}

TEST_F(HourFunctionTest, AConnectionInTheMiddleOfAReadingKeepsWhatItHas) {
  const Statement reading = Prepare(fast_.Handle(), "SELECT 1;");
  ASSERT_EQ(sqlite3_step(reading.get()), SQLITE_ROW);
  EXPECT_FALSE(UseFastHours(fast_.Handle()));
  ExpectTheSame("'2026-02-31T12:00:00'");
}

TEST(HourPartTest, IsThereForPlainTimesOnly) {
  EXPECT_EQ(HourPart("2026-03-07T12:34:56.789Z"), "2026-03-07T12");
  EXPECT_EQ(HourPart("2024-02-29 23:59:59"), "2024-02-29 23");
  for (const char* time : {"2023-02-29T12:00:00", "2026-03-07T24:00:00", "2026-03-07T12:60:00", "2026-03-07T12:00:60",
                           "2026-00-07T12:00:00", "2026-03-00T12:00:00", "2026-03-07T12:00", "now", ""}) {
    EXPECT_THAT(HourPart(time), IsEmpty()) << time;
  }
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
