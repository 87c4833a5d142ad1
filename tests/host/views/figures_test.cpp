#include "host/views/figures.h"

#include <gmock/gmock.h>

#include <limits>

namespace zt::telemetry::host {
namespace {

TEST(FiguresTest, DigitsAreGroupedByThrees) {
  EXPECT_EQ(GroupDigits("1"), "1");
  EXPECT_EQ(GroupDigits("999"), "999");
  EXPECT_EQ(GroupDigits("1000"), "1,000");
  EXPECT_EQ(GroupDigits("-1234567.891"), "-1,234,567.891");
  EXPECT_EQ(GroupDigits("unknown"), "unknown");
  EXPECT_EQ(GroupDigits(""), "");
}

TEST(FiguresTest, ANumberHasAtMostTwoDecimalsAndNoZerosAtItsEnd) {
  EXPECT_EQ(NumberText(0), "0");
  EXPECT_EQ(NumberText(12.5), "12.5");
  EXPECT_EQ(NumberText(1.066), "1.07");
  EXPECT_EQ(NumberText(4294967295.0), "4,294,967,295");
  EXPECT_EQ(NumberText(-61), "-61");
  EXPECT_EQ(NumberText(-0.001), "0");
}

TEST(FiguresTest, ANumberCanBeHugeOrNone) {
  EXPECT_THAT(NumberText(std::numeric_limits<float>::max()), testing::StartsWith("340,282,346,638,528,859,"));
  EXPECT_EQ(NumberText(std::numeric_limits<double>::infinity()), "inf");
  EXPECT_EQ(NumberText(std::numeric_limits<double>::quiet_NaN()), "nan");
}

TEST(FiguresTest, MinutesAreShownAsDaysHoursAndMinutes) {
  EXPECT_EQ(MinutesText(0), "0 min");
  EXPECT_EQ(MinutesText(59), "59 min");
  EXPECT_EQ(MinutesText(60), "1 h 0 min");
  EXPECT_EQ(MinutesText(3 * 1440 + 4 * 60 + 7), "3 d 4 h 7 min");
}

TEST(FiguresTest, MemoryIsAlsoShownInTheUnitThatFits) {
  EXPECT_EQ(KibibytesText(512), "512 kB");
  EXPECT_EQ(KibibytesText(2048), "2,048 kB (2 MiB)");
  EXPECT_EQ(KibibytesText(8'126'464), "8,126,464 kB (7.75 GiB)");
}

TEST(FiguresTest, BytesAreShownInTheUnitThatFits) {
  EXPECT_EQ(BytesText(0), "0 B");
  EXPECT_EQ(BytesText(999), "999 B");
  EXPECT_EQ(BytesText(1500), "1.5 kB");
  EXPECT_EQ(BytesText(2.5e9), "2.5 GB");
  EXPECT_EQ(BytesText(7e18), "7,000,000 TB");
}

}  // namespace
}  // namespace zt::telemetry::host
