#include "base/time_budget.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/base/scripted_clock.h"

namespace zt::base {
namespace {

using namespace std::chrono_literals;
using Budget = TimeBudgetBy<ScriptedClock>;

void Work(Budget& budget, ScriptedClock::duration time) {
  const Budget::Spending spending(budget);
  ScriptedClock::time += time;
}

TEST(TimeBudgetTest, WorkTakesItsTimeOffTheBudget) {
  Budget budget(100ms);
  Work(budget, 30ms);
  EXPECT_EQ(budget.Left(), 70ms);
  Work(budget, 69ms);
  EXPECT_EQ(budget.Left(), 1ms);
  EXPECT_FALSE(budget.IsSpent());
}

TEST(TimeBudgetTest, TheTimeBetweenIsFree) {
  Budget budget(100ms);
  Work(budget, 30ms);
  ScriptedClock::time += 5h;
  EXPECT_EQ(budget.Left(), 70ms);
}

TEST(TimeBudgetTest, IsSpentWhenItIsUsedUpAndHasNothingLeftBehindThat) {
  Budget budget(100ms);
  Work(budget, 100ms);
  EXPECT_TRUE(budget.IsSpent());
  Work(budget, 1h);
  EXPECT_TRUE(budget.IsSpent());
  EXPECT_EQ(budget.Left(), 0ms);
}

TEST(TimeBudgetTest, ItsLastPartOfAMillisecondIsAWholeOne) {
  Budget budget(10ms);
  Work(budget, 8ms + 1us);
  EXPECT_EQ(budget.Left(), 2ms);
}

TEST(TimeBudgetTest, WorkThatFailsCostsItsTimeToo) {
  Budget budget(100ms);
  try {
    const Budget::Spending spending(budget);
    ScriptedClock::time += 40ms;
    throw std::runtime_error("out of order");
  } catch (const std::runtime_error&) {
    EXPECT_EQ(budget.Left(), 60ms);
  }
}

}  // namespace
}  // namespace zt::base
