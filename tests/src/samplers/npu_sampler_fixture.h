#pragma once

#include <nlohmann/json.hpp>

#include "samplers/npu_msg.h"
#include "support/sampler_test.h"

namespace zt::telemetry::collector::performancesamples {

using contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo_NpuInfo;
using nlohmann::json;

inline constexpr char kDevice[] = R"(PCI\VEN_8086&DEV_7D1D&SUBSYS_22228086&REV_04\3&11583659&0&58)";

/// An NPU that reports nothing but its name.
inline json NamedNpu(const std::string& device_id) {
  return {{"device_id", device_id}};
}

inline json Report(const json& npus) {
  return {{"npu_count", npus.size()}, {"npu_info", npus}};
}

inline json FullNpu() {
  return {{"device_id", kDevice},
          {"adapter_temp_celsius", 47.9},
          {"adapter_engine_frequency_hz", {{"frequency", 1400000000}}},
          {"adapter_mem_frequency_hz", {{"frequency", 3200000000}}},
          {"adapter_mem_usage", {{"dedicated", 0}, {"shared", 783000000}}},
          {"dedicated_system_memory", 536870912},
          {"shared_system_memory", 17612931072},
          {"memory_total", 1000000000},
          {"memory_used", 750000000}};
}

class NpuSamplerTest : public SamplerTest {
 protected:
  /// Samples a machine with this report into an empty record.
  const HwInfo& Sample(const std::string& report) {
    machine_.npu_report = report;
    PopulateEmpty<NPUMsg>();
    return Hardware();
  }
  const HwInfo& Sample(const json& report) { return Sample(report.dump()); }

  /// Samples a machine with one NPU; the entry is the shared record's.
  const PcLogPerformanceSamplesAsCDM_HwInfo_NpuInfo& SampleOne(const json& npu) {
    return Sample(Report(json::array({npu}))).npus_info(0);
  }
  /// The same for an NPU that has just one fact beside its name.
  const PcLogPerformanceSamplesAsCDM_HwInfo_NpuInfo& SampleWith(const std::string& key, const json& value) {
    return SampleOne({{"device_id", kDevice}, {key, value}});
  }

  void ExpectInvalid(const std::string& report) {
    SCOPED_TRACE(report.substr(0, 200));
    const Error error = FailureOf([&] { Sample(report); });
    EXPECT_EQ(error.kind, 5);
    EXPECT_EQ(error.code, -1);
    EXPECT_EQ(error.description, "Invalid NPU JSON");
    EXPECT_EQ(error.message, "");
    EXPECT_EQ(Hardware().npus_info_size(), 0);
  }

  /// `type`: the JSON library's name for what is not a number.
  void ExpectTypeError(const json& report, const std::string& type) {
    SCOPED_TRACE(report.dump().substr(0, 200));
    try {
      Sample(report);
      ADD_FAILURE() << "no error was thrown";
    } catch (const json::type_error& error) {
      EXPECT_EQ(error.id, 302);
      EXPECT_THAT(error.what(), testing::HasSubstr("] type must be number, but is " + type));
    }
  }

  void ExpectParseError(const std::string& report) {
    EXPECT_THROW(Sample(report), json::parse_error) << report.substr(0, 200);
    EXPECT_EQ(Hardware().npus_info_size(), 0);
  }
};

}  // namespace zt::telemetry::collector::performancesamples
