#include "host/views/json_lines.h"

#include <gmock/gmock.h>
#include <google/protobuf/util/json_util.h>

#include "device_performance_storage.pb.h"
#include "performance_samples_upload.pb.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

using contract::storage::device_performance::AmdPmfSamples;
using contract::upload::log::PcLogPerformanceSamplesAsCDM;
using testing::SizeIs;

TEST(JsonLinesTest, AStoredRecordIsOneLineOfThreeKeysInOrder) {
  AmdPmfSamples record;
  record.set_memory_clock_mhz(4800);
  record.set_local_time("2026-03-07T12:20:42-03:00");
  std::ostringstream out;
  JsonLines(out).ShowStored(record);
  EXPECT_EQ(out.str(), R"({"handover":"store","type":"zt.telemetry.contract.storage.device_performance.AmdPmfSamples",)"
                       R"("record":{"localTime":"2026-03-07T12:20:42-03:00","memoryClockMhz":4800}})"
                       "\n");
}

TEST(JsonLinesTest, ASentRecordReadsBackAsTheRecord) {
  PcLogPerformanceSamplesAsCDM record;
  record.set_collection_id("5CG0000001_\"quoted\"\n日本");
  record.mutable_hw_info()->mutable_system_memory_info()->set_utilization_physical_percent(52.7F);
  record.mutable_hw_info()->mutable_network_info()->set_is_vpn_connected(false);
  std::ostringstream out;
  JsonLines(out).ShowSent(record);
  const auto lines = JsonLinesOf(out.str());
  ASSERT_THAT(lines, SizeIs(1));
  EXPECT_EQ(lines[0]["handover"], "send");
  EXPECT_EQ(lines[0]["type"], "zt.telemetry.contract.upload.log.PcLogPerformanceSamplesAsCDM");
  EXPECT_EQ(lines[0]["record"]["hwInfo"]["networkInfo"]["isVPNConnected"], false);
  PcLogPerformanceSamplesAsCDM read;
  ASSERT_TRUE(google::protobuf::util::JsonStringToMessage(lines[0]["record"].dump(), &read).ok());
  EXPECT_EQ(read.SerializeAsString(), record.SerializeAsString());
}

TEST(JsonLinesTest, AnEmptyRecordIsAnEmptyObject) {
  std::ostringstream out;
  JsonLines(out).ShowSent(PcLogPerformanceSamplesAsCDM());
  EXPECT_EQ(JsonLinesOf(out.str()).at(0)["record"], nlohmann::json::object());
}

TEST(JsonLinesTest, ATextIsOneLineWhateverItHolds) {
  const std::string text = "{\"a\": \"b\"}\nsecond line\t日本";
  std::ostringstream out;
  JsonLines(out).ShowSentText(text);
  const auto lines = JsonLinesOf(out.str());
  ASSERT_THAT(lines, SizeIs(1));
  EXPECT_EQ(lines[0], (nlohmann::json{{"handover", "send"}, {"type", "text"}, {"text", text}}));
}

TEST(JsonLinesTest, BytesThatAreNoUtf8BecomeTheReplacementCharacter) {
  std::ostringstream out;
  JsonLines(out).ShowSentText(
      "a\xff"
      "b");
  EXPECT_EQ(JsonLinesOf(out.str()).at(0)["text"],
            "a\xEF\xBF\xBD"
            "b");
}

TEST(JsonLinesTest, AStreamThatTakesNothingIsAFailure) {
  std::ostringstream out;
  out.setstate(std::ios::badbit);
  EXPECT_THROW(JsonLines(out).ShowSentText("text"), std::runtime_error);
}

}  // namespace
}  // namespace zt::telemetry::host
