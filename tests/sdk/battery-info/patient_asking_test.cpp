#include "patient_asking.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "scripted_battery.h"
#include "tests/base/scripted_clock.h"

namespace zt::tests {
namespace {

using base::ScriptedClock;
using shared::battery::AskPatiently;
using shared::battery::ControlDevice;
using shared::battery::kAllBatteriesLimit;
using shared::battery::kAnswerLimit;
using std::chrono::milliseconds;
using testing::Each;
using testing::ElementsAre;

class PatientAskingTest : public testing::Test {
 protected:
  // A device whose answers take `times`, one after the other.
  ControlDevice Device(std::vector<milliseconds> times) {
    return AskPatiently(
        [this, times = std::move(times), next = std::size_t{0}](std::uint32_t, std::span<const std::byte>,
                                                                std::span<std::byte>, milliseconds limit) mutable {
          limits_.push_back(limit);
          const milliseconds time = times[next++ % times.size()];
          ScriptedClock::time += std::min(time, limit);
          return ControlOutcome{time > limit ? protocol::kTimedOut : protocol::kSuccess, 0};
        },
        all_);
  }

  static std::uint32_t Ask(const ControlDevice& device) { return device(1, {}, {}).error; }

  base::TimeLimitBy<ScriptedClock> all_{kAllBatteriesLimit};
  std::vector<milliseconds> limits_;
};

TEST_F(PatientAskingTest, EachAnswerMayTakeTheLimit) {
  const ControlDevice device = Device({kAnswerLimit});
  for (int i = 0; i < 7; ++i) EXPECT_EQ(Ask(device), protocol::kSuccess);
  EXPECT_THAT(limits_, Each(kAnswerLimit));
}

TEST_F(PatientAskingTest, ADriverThatRanOutOfTimeIsNotAskedAgain) {
  const ControlDevice device = Device({milliseconds(1), milliseconds(5'000), milliseconds(1)});
  EXPECT_EQ(Ask(device), protocol::kSuccess);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(Ask(device), protocol::kTimedOut);
  EXPECT_EQ(limits_.size(), 2U);
}

TEST_F(PatientAskingTest, OneThatDoesNotAnswerCostsTheOthersNothingButItsTime) {
  EXPECT_EQ(Ask(Device({milliseconds(5'000)})), protocol::kTimedOut);
  EXPECT_EQ(Ask(Device({milliseconds(1)})), protocol::kSuccess);
}

TEST_F(PatientAskingTest, AllTogetherEndWithTheirLimit) {
  for (int battery = 0; battery < 100; ++battery) {
    const ControlDevice device = Device({milliseconds(900)});
    for (int i = 0; i < 7; ++i) Ask(device);
  }
  EXPECT_EQ(limits_.size(), 12U);  // eleven of 0.9 s, and what is left
  EXPECT_EQ(limits_.back(), milliseconds(100));
  EXPECT_TRUE(all_.IsOver());
}

}  // namespace
}  // namespace zt::tests
