// The first cycle of a process, in a process of its own for each request.
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "support/child_run.h"
#include "support/temporary_folder.h"

namespace zt::tests {
namespace {

constexpr int kFirstCycleParts = 8;

class FirstCycleOnceTest : public testing::Test {
 protected:
  TemporaryFolder folder_;
};

class FirstCycleTest : public FirstCycleOnceTest, public testing::WithParamInterface<int> {
 protected:
  void SweepPart(const char* extent) {
    ASSERT_NO_THROW(RunToItsEnd(ZT_FIRST_CYCLE, {folder_.Utf8(), "look"}));
    std::ifstream numbers(folder_.Path() / "numbers");
    int count = 0;
    for (std::string number; numbers >> number; ++count) {
      if (count % kFirstCycleParts != GetParam()) continue;
      SCOPED_TRACE("request " + number);
      EXPECT_NO_THROW(RunToItsEnd(ZT_FIRST_CYCLE, {folder_.Utf8(), extent, number}));
    }
    EXPECT_GT(count, 20);
    RecordProperty("tried", count);
  }
};

TEST_P(FirstCycleTest, AFirstCycleSurvivesOneRefusedRequest) {
  SweepPart("one");
}

TEST_P(FirstCycleTest, AFirstCycleSurvivesTheEndOfAllMemory) {
  SweepPart("on");
}

// Protobuf makes them when they are first asked for, and ends the process where it finds no memory meanwhile.
TEST_F(FirstCycleOnceTest, TheCollectorAsksForNoDescriptorsOfRecords) {
  EXPECT_NO_THROW(RunToItsEnd(ZT_FIRST_CYCLE, {folder_.Utf8(), "descriptors"}));
}

INSTANTIATE_TEST_SUITE_P(Parts, FirstCycleTest, testing::Range(0, kFirstCycleParts));

}  // namespace
}  // namespace zt::tests
