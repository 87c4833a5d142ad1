#include "npu_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include <nlohmann/json.hpp>

namespace zt::tests {
namespace {

using nlohmann::json;
using shared::npu::ComposeReport;
using shared::npu::MemoryBytes;
using shared::npu::Npu;

Npu Named(const std::string& device_id) {
  Npu npu;
  npu.device_id = device_id;
  return npu;
}

Npu FullNpu() {
  return {.device_id = R"(PCI\VEN_8086&DEV_7D1D\3&11583659&0&58)",
          .temperature_celsius = 47.5,
          .engine_frequency_hz = 1400000000,
          .memory_frequency_hz = 3200000000,
          .memory_in_use = MemoryBytes{1, 783000000},
          .memory_size = MemoryBytes{536870912, 17612931072}};
}

TEST(NpuReportTest, WithoutNpusTheTextIsEmpty) {
  EXPECT_EQ(ComposeReport({}), "");
}

TEST(NpuReportTest, DescribesAnNpuUnderTheAgreedKeys) {
  EXPECT_EQ(json::parse(ComposeReport({FullNpu()})), json::parse(R"({
    "npu_count": 1,
    "npu_info": [{
      "device_id": "PCI\\VEN_8086&DEV_7D1D\\3&11583659&0&58",
      "adapter_temp_celsius": 47.5,
      "adapter_engine_frequency_hz": {"frequency": 1400000000},
      "adapter_mem_frequency_hz": {"frequency": 3200000000},
      "adapter_mem_usage": {"dedicated": 1, "shared": 783000000},
      "dedicated_system_memory": 536870912,
      "shared_system_memory": 17612931072,
      "memory_total": 18149801984,
      "memory_used": 783000001
    }]})"));
}

TEST(NpuReportTest, WhatIsNotReportedHasNoKey) {
  EXPECT_EQ(ComposeReport({Named("npu")}), R"({"npu_count":1,"npu_info":[{"device_id":"npu"}]})");
}

TEST(NpuReportTest, AnNpuWithoutANameIsCountedWithoutOne) {
  EXPECT_EQ(ComposeReport({Npu()}), R"({"npu_count":1,"npu_info":[{}]})");
}

TEST(NpuReportTest, KeepsTheOrderOfTheNpus) {
  const json report = json::parse(ComposeReport({Named("b"), Named("a")}));
  EXPECT_EQ(report["npu_count"], 2);
  EXPECT_EQ(report["npu_info"][0]["device_id"], "b");
  EXPECT_EQ(report["npu_info"][1]["device_id"], "a");
}

TEST(NpuReportTest, KeepsAllBitsOfAFigure) {
  Npu npu = FullNpu();
  npu.engine_frequency_hz = std::numeric_limits<std::uint64_t>::max();
  EXPECT_THAT(ComposeReport({npu}), testing::HasSubstr("18446744073709551615"));
}

}  // namespace
}  // namespace zt::tests
