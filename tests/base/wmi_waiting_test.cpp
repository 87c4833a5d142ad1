#include "base/wmi_waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "tests/base/scripted_clock.h"

namespace zt::base {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;
using testing::ElementsAre;

constexpr WaitLimits kLimits{5s, 12s};
constexpr std::int32_t kStatus = 77;

class WmiWaitingTest : public testing::Test {
 protected:
  // Parts that each take their time come until `parts` of them did.
  std::int32_t Gather(int parts, ScriptedClock::duration time_of_a_part) {
    return GatherWithin<ScriptedClock>(kLimits, [&](milliseconds wait) -> std::optional<std::int32_t> {
      waits_.push_back(wait);
      ScriptedClock::time += time_of_a_part;
      return static_cast<int>(waits_.size()) == parts ? std::optional(kStatus) : std::nullopt;
    });
  }

  std::vector<milliseconds> waits_;
};

TEST_F(WmiWaitingTest, GathersUntilAPartTellsTheStatus) {
  EXPECT_EQ(Gather(3, 1s), kStatus);
  EXPECT_THAT(waits_, ElementsAre(5s, 5s, 5s));
}

TEST_F(WmiWaitingTest, APartMayNotTakeMoreThanIsLeftOfTheWhole) {
  EXPECT_EQ(Gather(4, 3'500ms), kStatus);
  EXPECT_THAT(waits_, ElementsAre(5s, 5s, 5s, 1'500ms));
}

TEST_F(WmiWaitingTest, PartsWithoutEndEndWithTheWhole) {
  EXPECT_EQ(Gather(1'000'000, 4s), kTimedOut);
  EXPECT_THAT(waits_, ElementsAre(5s, 5s, 4s));
}

TEST_F(WmiWaitingTest, WithoutAnyTimeNothingIsAskedFor) {
  const auto never = [](milliseconds) -> std::optional<std::int32_t> { return kStatus; };
  EXPECT_EQ(GatherWithin<ScriptedClock>({5s, 0s}, never), kTimedOut);
}

}  // namespace
}  // namespace zt::base
