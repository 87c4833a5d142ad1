#include "npu_sampler_fixture.h"
#include "support/collector_fixture.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

class NpuDocumentTest : public NpuSamplerTest {};

TEST_F(NpuDocumentTest, ACountThatIsNotPositiveIsInvalid) {
  ExpectInvalid(R"({"npu_count": 0, "npu_info": []})");
  ExpectInvalid(R"({"npu_count": 0, "npu_info": [{"device_id": "npu"}]})");
  ExpectInvalid(R"({"npu_count": -1, "npu_info": []})");
  ExpectInvalid(R"({"npu_count": 0.9, "npu_info": []})");
  ExpectInvalid(R"({"npu_count": 2147483648, "npu_info": []})");
  ExpectInvalid(R"({"npu_count": 4294967296, "npu_info": []})");
  ExpectInvalid(R"({"npu_count": 1e300, "npu_info": []})");
}

TEST_F(NpuDocumentTest, AMissingCountOrListIsInvalid) {
  ExpectInvalid("{}");
  ExpectInvalid(R"({"npu_info": [{"device_id": "npu"}]})");
  ExpectInvalid(R"({"npu_count": 1})");
  ExpectInvalid(R"({"npu_count": 1, "npu_info": {"device_id": "npu"}})");
  ExpectInvalid(R"({"npu_count": 1, "npu_info": null})");
}

TEST_F(NpuDocumentTest, ARootThatIsNoObjectIsInvalid) {
  for (const char* root : {"[]", "[{\"npu_count\": 1}]", "null", "true", "1", "1.5", "\"npu_count\""})
    ExpectInvalid(root);
}

TEST_F(NpuDocumentTest, ACountMayBeAnyPositiveNumber) {
  EXPECT_EQ(Sample(std::string(R"({"npu_count": 1.9, "npu_info": [{"device_id": "npu"}]})")).npus_info_size(), 1);
}

TEST_F(NpuDocumentTest, AnEmptyListUnderAPositiveCountAddsNothing) {
  EXPECT_EQ(Sample(std::string(R"({"npu_count": 3, "npu_info": []})")).npus_info_size(), 0);
}

TEST_F(NpuDocumentTest, ACountThatIsNoNumberIsATypeError) {
  const json list = json::array({NamedNpu("npu")});
  ExpectTypeError({{"npu_count", "1"}, {"npu_info", list}}, "string");
  ExpectTypeError({{"npu_count", true}, {"npu_info", list}}, "boolean");
  ExpectTypeError({{"npu_count", nullptr}, {"npu_info", list}}, "null");
  ExpectTypeError({{"npu_count", list}}, "array");
  EXPECT_EQ(Hardware().npus_info_size(), 0);
}

struct WrongType {
  const char* name;
  json facts;
  const char* type;
};

void PrintTo(const WrongType& tested, std::ostream* out) {
  *out << tested.facts;
}

class NpuDocumentWrongTypeTest : public NpuSamplerTest, public testing::WithParamInterface<WrongType> {};

TEST_P(NpuDocumentWrongTypeTest, IsATypeErrorAndWhatWasAddedBeforeStays) {
  json wrong = GetParam().facts;
  wrong["device_id"] = "second";
  ExpectTypeError(Report(json::array({NamedNpu("first"), wrong, NamedNpu("third")})), GetParam().type);
  ASSERT_EQ(Hardware().npus_info_size(), 2);
  PcLogPerformanceSamplesAsCDM_HwInfo_NpuInfo expected;
  expected.set_device_id("second");
  EXPECT_EQ(Hardware().npus_info(1).SerializeAsString(), expected.SerializeAsString());
}

INSTANTIATE_TEST_SUITE_P(
    , NpuDocumentWrongTypeTest,
    testing::Values(
        WrongType{"Temperature", {{"adapter_temp_celsius", "47"}}, "string"},
        WrongType{"TemperatureFlag", {{"adapter_temp_celsius", true}}, "boolean"},
        WrongType{"Clock", {{"adapter_engine_frequency_hz", {{"frequency", "1"}}}}, "string"},
        WrongType{"ClockFlag", {{"adapter_engine_frequency_hz", {{"frequency", true}}}}, "boolean"},
        WrongType{"MemoryClock", {{"adapter_mem_frequency_hz", {{"frequency", json::object()}}}}, "object"},
        WrongType{"DedicatedInUse", {{"adapter_mem_usage", {{"dedicated", "1"}, {"shared", 1}}}}, "string"},
        WrongType{"SharedInUse", {{"adapter_mem_usage", {{"dedicated", 1}, {"shared", "1"}}}}, "string"},
        WrongType{"SharedInUseFlag", {{"adapter_mem_usage", {{"dedicated", 1}, {"shared", false}}}}, "boolean"},
        WrongType{"DedicatedMemory", {{"dedicated_system_memory", nullptr}, {"shared_system_memory", 1}}, "null"},
        WrongType{"SharedMemory", {{"dedicated_system_memory", 1}, {"shared_system_memory", "1"}}, "string"},
        WrongType{"Total", {{"memory_total", "1"}, {"memory_used", 1}}, "string"},
        WrongType{"Used", {{"memory_total", 0}, {"memory_used", json::array({1})}}, "array"}),
    [](const testing::TestParamInfo<WrongType>& tested) { return std::string(tested.param.name); });

TEST_F(NpuDocumentTest, FieldsFilledBeforeAWrongTypeStay) {
  json npu = FullNpu();
  npu["memory_used"] = "all";
  ExpectTypeError(Report(json::array({npu})), "string");
  EXPECT_FLOAT_EQ(Hardware().npus_info(0).memory_bandwidth_gb(), 16.90332F);
}

TEST_F(NpuDocumentTest, AReportCutAnywhereIsAParseError) {
  const std::string report = Report(json::array({FullNpu()})).dump();
  for (std::size_t length = 1; length < report.size(); ++length) ExpectParseError(report.substr(0, length));
}

TEST_F(NpuDocumentTest, ATextThatIsNoJsonIsAParseError) {
  for (const char* text : {" ", "\n", "npu", "<npu/>", "{'npu_count': 1}", "]", ",", "{\"npu_count\": 1,}"}) {
    ExpectParseError(text);
  }
}

TEST_F(NpuDocumentTest, WhatFollowsTheFirstValueIsIgnored) {
  const std::string report = Report(json::array({NamedNpu(kDevice)})).dump();
  for (const char* rest : {" ", "\n", "rubbish", "}", "{", "{\"npu_count\": 0}", "\"", "\xff\xfe", "\x01"}) {
    EXPECT_EQ(Sample(report + rest).npus_info_size(), 1) << rest;
  }
}

TEST_F(NpuDocumentTest, TextThatIsNotUtf8IsAParseError) {
  ExpectParseError("{\"npu_count\": 1, \"npu_info\": [{\"device_id\": \"npu \xff\"}]}");
  ExpectParseError("{\"npu_count\": 1, \"npu_info\": [{\"device_id\": \"npu \xc3\"}]}");
  ExpectParseError("{\"npu_count\": 1, \"npu_info\": [{\"device_id\": \"npu \xed\xa0\x80\"}]}");
}

TEST_F(NpuDocumentTest, ANumberBeyondAllPrecisionIsTheJsonLibrarysError) {
  EXPECT_THROW(Sample(std::string(R"({"npu_count": 1e999, "npu_info": []})")), json::out_of_range);
}

TEST_F(NpuDocumentTest, TakesAHugeReport) {
  json npus = json::array();
  for (int i = 0; i < 20000; ++i) npus.push_back({{"maker", std::string(200, 'x')}});
  npus.push_back(FullNpu());
  EXPECT_EQ(Sample(Report(npus)).npus_info_size(), 1);
}

constexpr std::size_t kDepth = 100000;

TEST_F(NpuDocumentTest, TakesDeeplyNestedLists) {
  const std::string deep = std::string(kDepth, '[') + std::string(kDepth, ']');
  EXPECT_EQ(Sample(R"({"npu_count": 1, "more": )" + deep + R"(, "npu_info": [{"device_id": "npu"}, )" + deep + "]}")
                .npus_info_size(),
            1);
}

TEST_F(NpuDocumentTest, ADeeplyNestedRootIsInvalid) {
  ExpectInvalid(std::string(kDepth, '[') + std::string(kDepth, ']'));
}

TEST_F(NpuDocumentTest, TakesDeeplyNestedObjects) {
  std::string deep;
  for (std::size_t i = 0; i < kDepth; ++i) deep += R"({"frequency":)";
  deep += "1" + std::string(kDepth, '}');
  const std::string npu = R"({"device_id": "npu", "adapter_temp_celsius": 1, "other": )" + deep + "}";
  EXPECT_EQ(Sample(R"({"npu_count": 1, "npu_info": [)" + npu + "]}").npus_info_size(), 1);
}

TEST_F(NpuDocumentTest, ADeepReportThatIsCutIsAParseError) {
  ExpectParseError(std::string(kDepth, '['));
}

class NpuCycleTest : public CollectorTest {
 protected:
  std::vector<std::string> ErrorsWith(const std::string& report) {
    simulation::Machine machine;
    machine.clock = ExampleClock();
    machine.npu_report = report;
    simulation::UseMachine(machine);
    Execute(50);
    return log_.Messages(plog::error);
  }
};

TEST_F(NpuCycleTest, AMachineWithoutNpusLogsNoError) {
  EXPECT_THAT(ErrorsWith(""), testing::Not(testing::Contains(testing::HasSubstr("NPU"))));
  EXPECT_EQ(OnlySent().hw_info().npus_info_size(), 0);
}

TEST_F(NpuCycleTest, AnInvalidReportIsOneErrorLineAndTheRecordIsSent) {
  EXPECT_THAT(ErrorsWith(R"({"npu_count": 0, "npu_info": []})"),
              testing::Contains("Error handling message. Details: Invalid NPU JSON").Times(1));
  EXPECT_EQ(OnlySent().hw_info().npus_info_size(), 0);
}

TEST_F(NpuCycleTest, ATextThatIsNoJsonIsOneErrorLineAndTheRecordIsSent) {
  const auto without = ErrorsWith("");
  log_.lines.clear();
  sink_->sent.clear();
  EXPECT_EQ(ErrorsWith("rubbish").size(), without.size() + 1);
  EXPECT_EQ(OnlySent().hw_info().npus_info_size(), 0);
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
