#include "base/time_limit.h"

#include <gtest/gtest.h>

#include "tests/base/scripted_clock.h"

namespace zt::base {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

class TimeLimitTest : public testing::Test {
 protected:
  TimeLimitTest() { ScriptedClock::time = 5h; }

  static void Pass(ScriptedClock::duration time) { ScriptedClock::time += time; }
};

TEST_F(TimeLimitTest, CountsFromItsMaking) {
  const TimeLimitBy<ScriptedClock> limit(100ms);
  EXPECT_EQ(limit.Left(), 100ms);
  EXPECT_FALSE(limit.IsOver());
  Pass(30ms);
  EXPECT_EQ(limit.Left(), 70ms);
  EXPECT_FALSE(limit.IsOver());
}

TEST_F(TimeLimitTest, IsOverWhenItIsReached) {
  const TimeLimitBy<ScriptedClock> limit(100ms);
  Pass(100ms - 1ns);
  EXPECT_FALSE(limit.IsOver());
  Pass(1ns);
  EXPECT_TRUE(limit.IsOver());
  EXPECT_EQ(limit.Left(), 0ms);
}

TEST_F(TimeLimitTest, ItsLastPartOfAMillisecondIsAWholeOne) {
  const TimeLimitBy<ScriptedClock> limit(10ms);
  Pass(8ms + 1us);
  EXPECT_EQ(limit.Left(), 2ms);
  Pass(1'998us);
  EXPECT_FALSE(limit.IsOver());
  EXPECT_EQ(limit.Left(), 1ms);
}

TEST_F(TimeLimitTest, HasNothingLeftBehindItsEnd) {
  const TimeLimitBy<ScriptedClock> limit(10ms);
  Pass(1h);
  EXPECT_TRUE(limit.IsOver());
  EXPECT_EQ(limit.Left(), 0ms);
}

TEST_F(TimeLimitTest, OfNoTimeIsOverAtOnce) {
  EXPECT_TRUE(TimeLimitBy<ScriptedClock>(0ms).IsOver());
  EXPECT_TRUE(TimeLimit(0ms).IsOver());
}

TEST_F(TimeLimitTest, TheSystemsRunsDownByItself) {
  const TimeLimit limit(1ms);
  const TimeLimit long_limit(1h);
  while (!limit.IsOver()) EXPECT_LE(limit.Left(), 1ms);
  EXPECT_EQ(limit.Left(), 0ms);
  EXPECT_FALSE(long_limit.IsOver());
  EXPECT_LE(long_limit.Left(), milliseconds(1h));
  EXPECT_GT(long_limit.Left(), milliseconds(50min));
}

}  // namespace
}  // namespace zt::base
