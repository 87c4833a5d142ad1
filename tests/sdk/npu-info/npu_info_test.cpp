#include "zt/shared/npu/npu_info.h"

#include <gtest/gtest.h>

#include "simulation/machine.h"
#include "support/status_codes.h"

// The library as its users see it.
namespace zt::tests {
namespace {

using shared::npu::NPUInfo;

TEST(NpuInfoTest, GivesTheMachinesReport) {
  simulation::Machine machine;
  machine.npu_report = R"({"npu_count": 1})";
  simulation::UseMachine(machine);
  NPUInfo library;
  EXPECT_STREQ(library.GetNPUInfoAsJsonString(), R"({"npu_count": 1})");
}

TEST(NpuInfoTest, WithoutNpusTheTextIsEmpty) {
  simulation::UseMachine({});
  NPUInfo library;
  EXPECT_STREQ(library.GetNPUInfoAsJsonString(), "");
  EXPECT_EQ(library.GetStatus(), 0);
}

TEST(NpuInfoTest, NpusThatCannotBeAskedForAreNoNpusAndAStatus) {
  simulation::Machine machine;
  machine.npu_failure = simulation::Failure{tests::kUnspecifiedFailure};
  simulation::UseMachine(machine);
  NPUInfo library;
  EXPECT_STREQ(library.GetNPUInfoAsJsonString(), "");
  EXPECT_EQ(library.GetStatus(), tests::kUnspecifiedFailure);
}

}  // namespace
}  // namespace zt::tests
