#include "zt/com/object_gathering.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "base/time_limit.h"
#include "support/status_codes.h"
#include "support/windows/fake_enumerator.h"

namespace zt::tests {
namespace {

using base::kTimedOut;
using com::ComPtr;
using com::GatherObjects;
using com::WaitLimits;
using std::chrono::milliseconds;
using Objects = std::vector<ComPtr<IWbemClassObject>>;

class ObjectGatheringTest : public ::testing::Test {
 protected:
  // An answer with `count` objects, numbered on from those before.
  FakeEnumerator::Answer Answer(HRESULT status, int count) {
    FakeEnumerator::Answer answer;
    answer.status = status;
    for (int i = 0; i < count; ++i) {
      answer.objects.push_back(MakeFake<FakeClassObject>());
      answer.objects.back()->SetNumber(L"Number", next_number_++);
    }
    return answer;
  }

  HRESULT Gather(const WaitLimits& limits = {}) { return GatherObjects(*enumerator_.Get(), limits, objects_); }

  // The numbers of the gathered objects are 0 and on, without a gap.
  void ExpectObjects(int count) {
    ASSERT_EQ(objects_.size(), static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
      com::Variant number;
      ASSERT_EQ(objects_[static_cast<std::size_t>(i)]->Get(L"Number", 0, number.Receive(), nullptr, nullptr), S_OK);
      EXPECT_EQ(number.Get().lVal, i);
    }
  }

  ComPtr<FakeEnumerator> enumerator_ = MakeFake<FakeEnumerator>();
  Objects objects_;
  LONG next_number_ = 0;
};

TEST_F(ObjectGatheringTest, AnEmptyEnumerationIsASuccess) {
  EXPECT_EQ(Gather(), S_OK);
  ExpectObjects(0);
}

TEST_F(ObjectGatheringTest, TheObjectsOfTheLastAnswerBelongToIt) {
  enumerator_->answers = {Answer(WBEM_S_FALSE, 3)};
  EXPECT_EQ(Gather(), S_OK);
  ExpectObjects(3);
  EXPECT_EQ(enumerator_->calls.size(), 1U);
}

TEST_F(ObjectGatheringTest, SeveralAnswersFollowEachOther) {
  enumerator_->answers = {Answer(WBEM_S_NO_ERROR, 64), Answer(WBEM_S_NO_ERROR, 64), Answer(WBEM_S_FALSE, 1)};
  EXPECT_EQ(Gather(), S_OK);
  ExpectObjects(129);
}

TEST_F(ObjectGatheringTest, SeveralObjectsAreAskedForAtOnce) {
  Gather();
  EXPECT_GT(enumerator_->calls.front().wanted, 1U);
}

TEST_F(ObjectGatheringTest, ObjectsThatCameBeforeATimeoutAreProgress) {
  enumerator_->answers = {Answer(WBEM_S_TIMEDOUT, 2), Answer(WBEM_S_TIMEDOUT, 1), Answer(WBEM_S_FALSE, 0)};
  EXPECT_EQ(Gather(), S_OK);
  ExpectObjects(3);
}

TEST_F(ObjectGatheringTest, ATimeoutWithoutObjectsEndsTheEnumeration) {
  enumerator_->answers = {Answer(WBEM_S_TIMEDOUT, 2), Answer(WBEM_S_TIMEDOUT, 0), Answer(WBEM_S_NO_ERROR, 1)};
  EXPECT_EQ(Gather(), kTimedOut);
  ExpectObjects(2);
  EXPECT_EQ(enumerator_->calls.size(), 2U);
}

TEST_F(ObjectGatheringTest, AnErrorKeepsTheObjectsBefore) {
  enumerator_->answers = {Answer(WBEM_S_NO_ERROR, 2), Answer(tests::kInvalidClass, 0)};
  EXPECT_EQ(Gather(), tests::kInvalidClass);
  ExpectObjects(2);
}

TEST_F(ObjectGatheringTest, AnErrorOfTheFirstAnswerIsTheStatus) {
  enumerator_->answers = {Answer(tests::kInvalidClass, 0)};
  EXPECT_EQ(Gather(), tests::kInvalidClass);
  ExpectObjects(0);
}

TEST_F(ObjectGatheringTest, ObjectsThatComeWithAnErrorAreKept) {
  enumerator_->answers = {Answer(tests::kInvalidClass, 2)};
  EXPECT_EQ(Gather(), tests::kInvalidClass);
  ExpectObjects(2);
}

TEST_F(ObjectGatheringTest, EachObjectIsOwnedOnce) {
  enumerator_->answers = {Answer(WBEM_S_FALSE, 1)};
  Gather();
  const ComPtr<FakeClassObject> object = enumerator_->answers.front().objects.front();
  EXPECT_EQ(object->AddRef(), 4U);  // the answer's, the gathered one, this test's two
  object->Release();
  objects_.clear();
  EXPECT_EQ(object->AddRef(), 3U);
  object->Release();
}

TEST_F(ObjectGatheringTest, OneAnswerMayTakeTheLimitOfAnObject) {
  Gather({milliseconds(700), milliseconds(60'000)});
  EXPECT_EQ(enumerator_->calls.front().timeout_ms, 700);
}

TEST_F(ObjectGatheringTest, AnAnswerMayNotTakeMoreThanIsLeftOfTheWhole) {
  Gather({milliseconds(60'000), milliseconds(700)});
  EXPECT_LE(enumerator_->calls.front().timeout_ms, 700);
  EXPECT_GT(enumerator_->calls.front().timeout_ms, 0);
}

TEST_F(ObjectGatheringTest, TheWholeEndsAlthoughObjectsKeepComing) {
  for (int i = 0; i < 100; ++i) {
    enumerator_->answers.push_back(Answer(WBEM_S_TIMEDOUT, 1));
    enumerator_->answers.back().before = [] { std::this_thread::sleep_for(milliseconds(20)); };
  }
  EXPECT_EQ(Gather({milliseconds(50), milliseconds(100)}), kTimedOut);
  EXPECT_GE(objects_.size(), 1U);
  EXPECT_LE(objects_.size(), 6U);
}

TEST_F(ObjectGatheringTest, TheLimitsOfAQueryAreFiveAndFifteenSeconds) {
  EXPECT_EQ(WaitLimits().object, std::chrono::seconds(5));
  EXPECT_EQ(WaitLimits().whole, std::chrono::seconds(15));
}

}  // namespace
}  // namespace zt::tests
