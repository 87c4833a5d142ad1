#include "store/hour_windows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>
#include <string>
#include <utility>

namespace zt::telemetry::collector::performancesamples {

static bool operator==(const RowRange& a, const RowRange& b) {
  return a.first == b.first && a.last == b.last;
}

static void PrintTo(const RowRange& range, std::ostream* out) {
  *out << range.first << "-" << range.last;
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int64_t kEnd = std::numeric_limits<std::int64_t>::max();

/// Ranges of a table without gaps that begins with row 1: stretches of so many rows of an hour.
std::vector<RowRange> RangesOf(std::initializer_list<std::pair<const char*, int>> stretches, std::int64_t rows = 1) {
  HourWindows windows;
  std::int64_t before = 0;
  for (const auto& [hour, count] : stretches) {
    windows.Add(hour, before + 1, before);
    before += count;
  }
  return windows.Ranges(rows);
}

TEST(HourWindowsTest, AnEmptyTableHasNoRange) {
  EXPECT_THAT(RangesOf({}), IsEmpty());
}

TEST(HourWindowsTest, OrderlyHoursHaveARangeEach) {
  EXPECT_THAT(RangesOf({{"12", 3}, {"13", 2}, {"14", 4}}),
              ElementsAre(RowRange{1, 3}, RowRange{4, 5}, RowRange{6, kEnd}));
}

TEST(HourWindowsTest, SmallHoursShareARange) {
  EXPECT_THAT(RangesOf({{"10", 3}, {"11", 3}, {"12", 3}, {"13", 3}, {"14", 3}}, 6),
              ElementsAre(RowRange{1, 6}, RowRange{7, 12}, RowRange{13, kEnd}));
}

TEST(HourWindowsTest, SamplesWithoutAnHourComeBeforeAllOthers) {
  EXPECT_THAT(RangesOf({{"", 2}, {"12", 2}}), ElementsAre(RowRange{1, 2}, RowRange{3, kEnd}));
  EXPECT_THAT(RangesOf({{"12", 2}, {"", 2}}), ElementsAre(RowRange{1, kEnd}));
}

TEST(HourWindowsTest, ALateSampleJoinsItsHourAndAllSince) {
  EXPECT_THAT(RangesOf({{"11", 1}, {"12", 1}, {"13", 1}, {"12", 1}, {"14", 1}}),
              ElementsAre(RowRange{1, 1}, RowRange{2, 4}, RowRange{5, kEnd}));
}

TEST(HourWindowsTest, ALateSampleOfAnHourOfItsOwnJoinsTheLaterHoursOnly) {
  EXPECT_THAT(RangesOf({{"10", 1}, {"12", 1}, {"13", 1}, {"11", 1}, {"13", 1}}),
              ElementsAre(RowRange{1, 1}, RowRange{2, kEnd}));
}

TEST(HourWindowsTest, HoursInBackwardOrderAreOneRange) {
  EXPECT_THAT(RangesOf({{"14", 1}, {"13", 1}, {"12", 1}}), ElementsAre(RowRange{1, kEnd}));
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
