#include "tests/endurance/sample_account.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zt::endurance {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Three samples an hour.
std::string HourOfThree(std::int64_t sample) {
  return std::to_string((sample - 1) / 3);
}

class SampleAccountTest : public testing::Test {
 protected:
  void Cycle(const std::map<std::string, std::int64_t>& sent_by_hour, const std::vector<std::int64_t>& deleted) {
    account_.AddCycle(sent_by_hour, deleted, HourOfThree);
  }

  SampleAccount account_;
};

TEST_F(SampleAccountTest, WhatIsSentAndGoesIsAccountedFor) {
  Cycle({{"0", 3}, {"1", 1}}, {1, 2, 3, 4});
  EXPECT_EQ(account_.Sent(), 4);
  EXPECT_EQ(account_.SentAgain(), 0);
  EXPECT_THAT(account_.Lost(), IsEmpty());
  EXPECT_EQ(account_.WrongHours(), 0);
  EXPECT_THAT(account_.LastSent(), ElementsAre(1, 2, 3, 4));
}

TEST_F(SampleAccountTest, WhatGoesUnsentIsLost) {
  Cycle({{"0", 2}}, {1, 2, 3, 4});
  EXPECT_THAT(account_.Lost(), ElementsAre(3, 4));
  EXPECT_EQ(account_.Sent(), 2);
}

TEST_F(SampleAccountTest, WhatStaysIsSentAgain) {
  Cycle({{"0", 2}}, {});
  Cycle({{"0", 3}}, {1, 2, 3});
  EXPECT_EQ(account_.Sent(), 3);
  EXPECT_EQ(account_.SentAgain(), 2);
  EXPECT_THAT(account_.Lost(), IsEmpty());
}

TEST_F(SampleAccountTest, ARecordOfAnotherHourIsWrong) {
  Cycle({{"0", 2}, {"1", 2}}, {1, 2, 3, 4});
  EXPECT_EQ(account_.WrongHours(), 1);
}

TEST_F(SampleAccountTest, WhatIsGoneIsNotSentLater) {
  Cycle({{"0", 3}}, {1, 2, 3});
  Cycle({{"1", 3}}, {4, 5, 6});
  EXPECT_EQ(account_.WrongHours(), 0);
  EXPECT_EQ(account_.SentAgain(), 0);
  Cycle({{"1", 1}}, {});  // one of those that are gone
  EXPECT_EQ(account_.WrongHours(), 1);
}

TEST_F(SampleAccountTest, ASampleGoesOnce) {
  Cycle({{"0", 1}}, {1});
  Cycle({}, {1});
  EXPECT_EQ(account_.DeletedTwice(), 1);
}

}  // namespace
}  // namespace zt::endurance
