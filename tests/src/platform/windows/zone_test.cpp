#include <windows.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <utility>

#include "platform/clock.h"

// Each suite runs in a zone of its own. Under Wine the environment chooses it (TZ); on Windows it is a setting of the
// machine that no test may change, so that only the suite of its own zone has something to check there.
namespace zt::tests {
namespace {

using telemetry::collector::performancesamples::platform::LocalOffsetMinutes;
using telemetry::collector::performancesamples::platform::StandardOffsetMinutes;

constexpr std::int64_t k2000March20 = 953'553'600;  // 12:00:00 UTC each
constexpr std::int64_t k2026January15 = 1'768'478'400;
constexpr std::int64_t k2026July15 = 1'784'116'800;
constexpr std::int64_t k2026March8 = 1'772'971'200;
constexpr std::int64_t k2026November1 = 1'793'534'400;
constexpr std::int64_t kHour = 3'600;

bool RunsUnderWine() {
  return ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

class ZoneTest : public ::testing::Test {
 protected:
  explicit ZoneTest(std::wstring key) : key_(std::move(key)) {}

  void SetUp() override {
    DYNAMIC_TIME_ZONE_INFORMATION zone{};
    ::GetDynamicTimeZoneInformation(&zone);
    const bool in_zone = key_ == zone.TimeZoneKeyName;
    if (!in_zone && !RunsUnderWine()) GTEST_SKIP() << "this machine is in another zone";
    ASSERT_TRUE(in_zone) << "set TZ as ctest does";
  }

  static void ExpectOffsets(std::int64_t moment, std::int32_t local, std::int32_t standard) {
    EXPECT_EQ(LocalOffsetMinutes(moment), local) << moment;
    EXPECT_EQ(StandardOffsetMinutes(moment), standard) << moment;
  }

 private:
  std::wstring key_;
};

class ZoneNewYorkTest : public ZoneTest {
 protected:
  ZoneNewYorkTest() : ZoneTest(L"Eastern Standard Time") {}
};

class ZoneSydneyTest : public ZoneTest {
 protected:
  ZoneSydneyTest() : ZoneTest(L"AUS Eastern Standard Time") {}
};

class ZoneKolkataTest : public ZoneTest {
 protected:
  ZoneKolkataTest() : ZoneTest(L"India Standard Time") {}
};

class ZoneNewfoundlandTest : public ZoneTest {
 protected:
  ZoneNewfoundlandTest() : ZoneTest(L"Newfoundland Standard Time") {}
};

// A zone that the system has no table of.
class ZoneUntabledTest : public ZoneTest {
 protected:
  ZoneUntabledTest() : ZoneTest(L"") {}
};

TEST_F(ZoneNewYorkTest, WinterIsStandardTime) {
  ExpectOffsets(k2026January15, -300, -300);
}

TEST_F(ZoneNewYorkTest, InSummerTheStandardOffsetStays) {
  ExpectOffsets(k2026July15, -240, -300);
}

TEST_F(ZoneNewYorkTest, DaylightSavingBeginsWithItsSecond) {
  const std::int64_t begin = k2026March8 - 5 * kHour;
  ExpectOffsets(begin - 1, -300, -300);
  ExpectOffsets(begin, -240, -300);
}

TEST_F(ZoneNewYorkTest, DaylightSavingEndsWithItsSecond) {
  const std::int64_t end = k2026November1 - 6 * kHour;
  ExpectOffsets(end - 1, -240, -300);
  ExpectOffsets(end, -300, -300);
}

TEST_F(ZoneNewYorkTest, AYearHasTheRulesThatItHadThen) {
  ExpectOffsets(k2000March20, -300, -300);
}

TEST_F(ZoneNewYorkTest, AMomentBeyondTheCalendarIsTheNearestInIt) {
  for (const std::int64_t moment : {std::numeric_limits<std::int64_t>::min(), std::int64_t{-12'000'000'000},
                                    std::int64_t{1'000'000'000'000}, std::numeric_limits<std::int64_t>::max()}) {
    ExpectOffsets(moment, -300, -300);
  }
}

TEST_F(ZoneSydneyTest, DaylightSavingIsInTheSouthernSummer) {
  ExpectOffsets(k2026January15, 660, 600);
  ExpectOffsets(k2026July15, 600, 600);
}

TEST_F(ZoneSydneyTest, TheTurnOfTheYearIsInSummer) {
  constexpr std::int64_t kNewYear2026 = 1'767'225'600;
  for (std::int64_t moment = kNewYear2026 - 12 * kHour; moment <= kNewYear2026 + 12 * kHour; moment += kHour) {
    ExpectOffsets(moment, 660, 600);
  }
}

TEST_F(ZoneKolkataTest, HalfHoursAreKept) {
  ExpectOffsets(k2026July15, 330, 330);
}

TEST_F(ZoneNewfoundlandTest, NegativeHalfHoursAreKept) {
  ExpectOffsets(k2026January15, -210, -210);
  ExpectOffsets(k2026July15, -150, -210);
}

TEST_F(ZoneUntabledTest, TheZoneOfTodayIsTheZoneOfEveryYear) {
  ExpectOffsets(k2000March20, 195, 195);
  ExpectOffsets(k2026July15, 195, 195);
}

}  // namespace
}  // namespace zt::tests
