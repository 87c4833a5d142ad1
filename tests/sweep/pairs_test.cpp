#include <gmock/gmock.h>

#include "agreed_outcomes.h"
#include "sweep.h"

namespace zt::tests {
namespace {

// A fixed part of all pairs; scripts/sweep --pairs tries them all.
TEST(PairsTest, NoPairOfCallsThatFailComesToMoreThanBothAloneButWhatIsAgreed) {
  constexpr std::size_t kSample = 300;
  const std::unique_ptr<SweptCycle> cycle = MakeCycle("everything");
  Sweep sweep(*cycle);
  sweep.Pairs({0, sweep.PairCount() / kSample});
  EXPECT_GE(sweep.Numbers().attempts, kSample);
  EXPECT_THAT(sweep.Conjunctions(), testing::IsSubsetOf(AgreedLines("pairs of everything")));
  EXPECT_THAT(sweep.Findings(), testing::IsEmpty());
}

}  // namespace
}  // namespace zt::tests
