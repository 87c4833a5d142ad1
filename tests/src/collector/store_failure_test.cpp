#include "collector/store_failure.h"

#include <gtest/gtest.h>

#include "device_performance_storage.pb.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using common::Error;
using contract::storage::device_performance::AmdPmfSamples;

TEST(StoreFailureTest, KeepsTheCodeAndDescriptionOfTheCallUnderTheRecordsType) {
  const Error cause(2, 112, "disk full", "the sink's type", "the sink's message");
  const Error expected(5, 112, "disk full", "zt.telemetry.contract.storage.device_performance.AmdPmfSamples",
                       "PerfMessages::ProcessStorageAndUpload - AddStore failed foramd_pmf.pb.h");
  EXPECT_EQ(StoreFailure(cause, kAmdPmfNames), expected);
}

TEST(StoreFailureTest, NamesRecordsAsTheContractDoes) {
  EXPECT_EQ(kAmdPmfNames.type, AmdPmfSamples().GetTypeName());
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
