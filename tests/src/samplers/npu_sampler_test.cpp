#include "npu_sampler_fixture.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

TEST_F(NpuSamplerTest, AnEmptyReportAddsNothingSilently) {
  const auto& hardware = Sample(std::string());
  EXPECT_TRUE(PerfMessages::static_cdm_->has_hw_info());
  EXPECT_EQ(hardware.ByteSizeLong(), 0U);
}

TEST_F(NpuSamplerTest, FillsEveryFieldOfAnNpu) {
  const auto& npu = SampleOne(FullNpu());
  EXPECT_EQ(npu.device_id(), kDevice);
  ASSERT_EQ(npu.temperature_sensors_info_size(), 1);
  EXPECT_EQ(npu.temperature_sensors_info(0).sensor_name(), "Temp_0");
  EXPECT_EQ(npu.temperature_sensors_info(0).temperature_celsius(), 47U);
  EXPECT_FLOAT_EQ(npu.npus_clock_mhz(), 1.4e9F);
  EXPECT_FLOAT_EQ(npu.memory_clock_mhz(), 3.2e9F);
  EXPECT_FLOAT_EQ(npu.memory_used_mb(), 746.72699F);
  EXPECT_FLOAT_EQ(npu.memory_bandwidth_gb(), 16.90332F);
  EXPECT_TRUE(npu.has_memory_controller_utilization_percent());
  EXPECT_EQ(npu.memory_controller_utilization_percent(), 0.0F);
}

TEST_F(NpuSamplerTest, AnNpuWithOnlyANameIsAnEntryWithOnlyThatText) {
  PcLogPerformanceSamplesAsCDM_HwInfo_NpuInfo expected;
  expected.set_device_id(kDevice);
  EXPECT_EQ(SampleOne(NamedNpu(kDevice)).SerializeAsString(), expected.SerializeAsString());
}

TEST_F(NpuSamplerTest, ReportsThirtyTwoOfFortyNpusInTheirOrder) {
  json npus = json::array();
  for (int i = 0; i < 40; ++i) npus.push_back(NamedNpu("npu " + std::to_string(i)));
  json report = Report(npus);
  report["npu_count"] = 1;
  const auto& hardware = Sample(report);
  ASSERT_EQ(hardware.npus_info_size(), 32);
  EXPECT_EQ(hardware.npus_info(0).device_id(), "npu 0");
  EXPECT_EQ(hardware.npus_info(31).device_id(), "npu 31");
}

TEST_F(NpuSamplerTest, AnNpuBeyondTheThirtySecondIsNotEvenRead) {
  json npus = json::array();
  for (int i = 0; i < 32; ++i) npus.push_back(NamedNpu("npu"));
  npus.push_back({{"device_id", "npu"}, {"adapter_temp_celsius", "hot"}});
  EXPECT_EQ(Sample(Report(npus)).npus_info_size(), 32);
}

TEST_F(NpuSamplerTest, WhatHasNoNameIsNeitherAddedNorCounted) {
  json npus = json::array();
  for (int i = 0; i < 10; ++i) {
    npus.insert(npus.end(),
                {json::object(), json{{"device_id", ""}}, json{{"device_id", 7}}, json{{"device_id", nullptr}},
                 json("npu"), json(7), json(nullptr), json::array({"device_id"})});
  }
  for (int i = 0; i < 32; ++i) npus.push_back(NamedNpu("npu"));
  const auto& hardware = Sample(Report(npus));
  EXPECT_EQ(hardware.npus_info_size(), 32);
  for (const auto& npu : hardware.npus_info()) EXPECT_EQ(npu.device_id(), "npu");
}

TEST_F(NpuSamplerTest, KeepsNamesInOtherScripts) {
  EXPECT_EQ(SampleOne(NamedNpu("処理装置 é")).device_id(), "処理装置 é");
}

TEST_F(NpuSamplerTest, CutsTheTemperatureToWholeDegrees) {
  const auto degrees = [this](const json& value) {
    return SampleWith("adapter_temp_celsius", value).temperature_sensors_info(0).temperature_celsius();
  };
  EXPECT_EQ(degrees(45), 45U);
  EXPECT_EQ(degrees(45.999), 45U);
  EXPECT_EQ(degrees(0.0), 0U);
  EXPECT_EQ(degrees(-5), 4294967291U);
  EXPECT_EQ(degrees(4294967297.0), 1U);
  EXPECT_EQ(degrees(1e300), 0U);
  EXPECT_EQ(degrees(-1e300), 0U);
}

TEST_F(NpuSamplerTest, CopiesClocksUnchangedAsSinglePrecision) {
  EXPECT_EQ(SampleWith("adapter_engine_frequency_hz", {{"frequency", 1.5}}).npus_clock_mhz(), 1.5F);
  EXPECT_EQ(SampleWith("adapter_mem_frequency_hz", {{"frequency", 16777217}}).memory_clock_mhz(), 16777216.0F);
}

TEST_F(NpuSamplerTest, SharedMemoryInUseWrapsFromTwoGibibytesOn) {
  const auto used = [this](const json& dedicated, const json& shared) {
    return SampleWith("adapter_mem_usage", {{"dedicated", dedicated}, {"shared", shared}}).memory_used_mb();
  };
  EXPECT_EQ(used(0, 2147483647), 2048.0F);
  EXPECT_EQ(used(0, 2147483648), -2048.0F);
  EXPECT_EQ(used(0, 4294967296), 0.0F);
  EXPECT_EQ(used(4294967296, 1048576), 4097.0F);
  EXPECT_EQ(used(524288.0, 524288.9), 1.0F);
  EXPECT_EQ(used(0, 1e300), -2048.0F);
}

TEST_F(NpuSamplerTest, MemoryInUseIsNullOrAllInWholeHundreds) {
  const auto percent = [this](const json& used, const json& total) {
    return SampleOne({{"device_id", kDevice}, {"memory_used", used}, {"memory_total", total}})
        .memory_controller_utilization_percent();
  };
  EXPECT_EQ(percent(750000000, 1000000000), 0.0F);
  EXPECT_EQ(percent(1000000000, 1000000000), 100.0F);
  EXPECT_EQ(percent(2999999999, 1000000000), 200.0F);
  EXPECT_EQ(percent(18446744073709551615U, 18446744073709551615U), 100.0F);
  EXPECT_EQ(percent(2.9, 1.9), 200.0F);
  EXPECT_EQ(percent(1e300, 1), 0.0F);
}

TEST_F(NpuSamplerTest, ATotalOfZeroLeavesTheUtilizationUnset) {
  const auto& npu = SampleOne({{"device_id", kDevice}, {"memory_used", 1}, {"memory_total", 0}});
  EXPECT_FALSE(npu.has_memory_controller_utilization_percent());
}

TEST_F(NpuSamplerTest, HalfOfAPairLeavesItsFieldUnset) {
  json npu = FullNpu();
  npu["adapter_engine_frequency_hz"] = {{"maximum", 1}};
  npu["adapter_mem_frequency_hz"] = json::array({1});
  npu["adapter_mem_usage"].erase("dedicated");
  npu.erase("shared_system_memory");
  npu.erase("memory_total");
  npu.erase("adapter_temp_celsius");
  PcLogPerformanceSamplesAsCDM_HwInfo_NpuInfo expected;
  expected.set_device_id(kDevice);
  EXPECT_EQ(SampleOne(npu).SerializeAsString(), expected.SerializeAsString());
}

TEST_F(NpuSamplerTest, AnotherHalfOfAPairLeavesItsFieldUnsetToo) {
  json npu = FullNpu();
  npu["adapter_mem_usage"].erase("shared");
  npu.erase("dedicated_system_memory");
  npu.erase("memory_used");
  const auto& entry = SampleOne(npu);
  EXPECT_FALSE(entry.has_memory_used_mb());
  EXPECT_FALSE(entry.has_memory_bandwidth_gb());
  EXPECT_FALSE(entry.has_memory_controller_utilization_percent());
  EXPECT_TRUE(entry.has_memory_clock_mhz());
}

TEST_F(NpuSamplerTest, ACopyOfAnotherBuilderSamplesToo) {
  machine_.npu_report = Report(json::array({NamedNpu(kDevice)})).dump();
  PopulateByCopy(NPUMsg());
  EXPECT_EQ(Hardware().npus_info_size(), 1);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
