#include "sweep.h"

#include <gmock/gmock.h>

#include <fstream>

namespace zt::tests {
namespace {

using testing::IsEmpty;

std::vector<std::string> Agreed(const std::string& cycle) {
  std::ifstream file(std::string(ZT_AGREED_OUTCOMES) + "/" + cycle + ".txt");
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line.front() != '#') lines.push_back(line);
  }
  return lines;
}

class SinglesTest : public testing::TestWithParam<const char*> {};

TEST_P(SinglesTest, EveryCallThatFailsComesToWhatIsAgreedAndToNothingElse) {
  const std::unique_ptr<SweptCycle> cycle = MakeCycle(GetParam());
  Sweep sweep(*cycle);
  EXPECT_THAT(sweep.Singles(Sweep::Look::kAfterEachCall), testing::ElementsAreArray(Agreed(GetParam())))
      << "scripts/sweep --write shows the outcomes as they are now, for a person to agree to";
  EXPECT_THAT(sweep.Findings(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Cycles, SinglesTest,
                         testing::Values("convertible-laptop", "workstation", "everything", "network"));

// A fixed part of all pairs; scripts/sweep --pairs tries them all.
TEST(PairsTest, NoPairOfCallsThatFailComesToMoreThanBothAlone) {
  constexpr std::size_t kSample = 400;
  const std::unique_ptr<SweptCycle> cycle = MakeCycle("everything");
  Sweep sweep(*cycle);
  const std::size_t parts = sweep.PairCount() / kSample;
  sweep.Pairs({0, parts});
  EXPECT_GE(sweep.Numbers().attempts, kSample);
  EXPECT_THAT(sweep.Findings(), IsEmpty());
}

}  // namespace
}  // namespace zt::tests
