#include "sweep.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string_view>
#include <tuple>

#include "agreed_outcomes.h"

namespace zt::tests {
namespace {

using testing::IsEmpty;

// How many calls of a name came to an effect with a kind of disturbance.
using Counts = std::map<std::string, std::size_t>;

// "fails (3)": a kind and its number of calls.
void Count(const std::string& name, std::string kind, const std::string& effect, Counts& counts) {
  std::size_t calls = 1;
  const std::size_t bracket = kind.find(" (");
  if (bracket != std::string::npos) {
    calls = std::stoul(kind.substr(bracket + 2));
    kind.erase(bracket);
  }
  counts[name + " | " + kind + " | " + effect] += calls;
}

// Of a line "name | kinds | effect" of a listing.
void CountLine(const std::string& line, Counts& counts) {
  constexpr std::string_view kBar = " | ";
  const std::size_t first = line.find(kBar);
  const std::size_t second = line.find(kBar, first + kBar.size());
  ASSERT_NE(second, std::string::npos) << line;
  std::string kinds = line.substr(first + kBar.size(), second - first - kBar.size());
  for (std::size_t comma = 0; comma != std::string::npos;) {
    comma = kinds.find(", ");
    Count(line.substr(0, first), kinds.substr(0, comma), line.substr(second + kBar.size()), counts);
    if (comma != std::string::npos) kinds.erase(0, comma + 2);
  }
}

Counts Agreed(const std::string& cycle) {
  Counts counts;
  for (const std::string& line : AgreedLines(cycle)) CountLine(line, counts);
  return counts;
}

// In parts, which can be tried at a time.
constexpr std::size_t kParts = 6;

class SinglesTest : public testing::TestWithParam<std::tuple<const char*, std::size_t>> {};

TEST_P(SinglesTest, EveryCallThatFailsComesToWhatIsAgreedAndToNothingElse) {
  const auto [name, part] = GetParam();
  const std::unique_ptr<SweptCycle> cycle = MakeCycle(name);
  Sweep sweep(*cycle);
  Counts found;
  for (const std::string& line : sweep.Singles({part, kParts})) CountLine(line, found);
  Counts agreed = Agreed(name);
  for (const auto& [outcome, calls] : found) EXPECT_LE(calls, agreed[outcome]) << outcome;
  EXPECT_FALSE(HasFailure()) << "scripts/sweep --write tells the outcomes as they are now, for a person to agree to";
  EXPECT_GT(found.size(), sweep.Numbers().calls / kParts / 3);
  EXPECT_THAT(sweep.Findings(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Cycles, SinglesTest,
                         testing::Combine(testing::Values("convertible-laptop", "workstation", "everything", "network"),
                                          testing::Range(std::size_t{0}, kParts)),
                         [](const auto& tested) {
                           std::string name = std::get<0>(tested.param);
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name + "_" + std::to_string(std::get<1>(tested.param));
                         });

}  // namespace
}  // namespace zt::tests
