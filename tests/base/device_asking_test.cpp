#include "base/device_asking.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "tests/base/scripted_clock.h"

namespace zt::base {
namespace {

using std::chrono::milliseconds;
using testing::Each;

constexpr milliseconds kAnswerLimit(1'000);
constexpr std::uint32_t kAnswered = 0;

class DeviceAskingTest : public testing::Test {
 protected:
  // A device whose answers take `times`, one after the other.
  ControlDevice Device(std::vector<milliseconds> times) {
    return AskPatiently(
        [this, times = std::move(times), next = std::size_t{0}](std::uint32_t, std::span<const std::byte>,
                                                                std::span<std::byte>, milliseconds limit) mutable {
          limits_.push_back(limit);
          const milliseconds time = times[next++ % times.size()];
          ScriptedClock::time += std::min(time, limit);
          return ControlOutcome{time > limit ? kRequestTimedOut : kAnswered, 0};
        },
        kAnswerLimit, all_);
  }

  static std::uint32_t Ask(const ControlDevice& device) { return device(1, {}, {}).error; }

  TimeLimitBy<ScriptedClock> all_{milliseconds(10'000)};
  std::vector<milliseconds> limits_;
};

TEST_F(DeviceAskingTest, EachAnswerMayTakeTheLimit) {
  const ControlDevice device = Device({kAnswerLimit});
  for (int i = 0; i < 7; ++i) EXPECT_EQ(Ask(device), kAnswered);
  EXPECT_THAT(limits_, Each(kAnswerLimit));
}

TEST_F(DeviceAskingTest, ADriverThatRanOutOfTimeIsNotAskedAgain) {
  const ControlDevice device = Device({milliseconds(1), milliseconds(5'000), milliseconds(1)});
  EXPECT_EQ(Ask(device), kAnswered);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(Ask(device), kRequestTimedOut);
  EXPECT_EQ(limits_.size(), 2U);
}

TEST_F(DeviceAskingTest, OneThatDoesNotAnswerCostsTheOthersNothingButItsTime) {
  EXPECT_EQ(Ask(Device({milliseconds(5'000)})), kRequestTimedOut);
  EXPECT_EQ(Ask(Device({milliseconds(1)})), kAnswered);
}

TEST_F(DeviceAskingTest, AllTogetherEndWithTheirLimit) {
  for (int battery = 0; battery < 100; ++battery) {
    const ControlDevice device = Device({milliseconds(900)});
    for (int i = 0; i < 7; ++i) Ask(device);
  }
  EXPECT_EQ(limits_.size(), 12U);  // eleven of 0.9 s, and what is left
  EXPECT_EQ(limits_.back(), milliseconds(100));
  EXPECT_TRUE(all_.IsOver());
}

}  // namespace
}  // namespace zt::base
