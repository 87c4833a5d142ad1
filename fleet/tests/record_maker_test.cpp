#include "fleet/forward/record_maker.h"

#include <gtest/gtest.h>

#include <string>
#include <variant>

#include "performance_samples_upload.pb.h"

namespace zt::telemetry::fleet {
namespace {

using Upload = contract::upload::log::PcLogPerformanceSamplesAsCDM;

constexpr char kUploadStart[] =
    R"({"handover":"send","type":"zt.telemetry.contract.upload.log.PcLogPerformanceSamplesAsCDM",)";
constexpr char kStoreStart[] =
    R"({"handover":"store","type":"zt.telemetry.contract.storage.device_performance.AmdPmfSamples",)";

Record RecordOf(const MadeRecord& made) {
  const auto* const record = std::get_if<Record>(&made);
  EXPECT_NE(record, nullptr);
  return record != nullptr ? *record : Record();
}

std::string ReasonOf(const MadeRecord& made) {
  const auto* const bad = std::get_if<BadRecord>(&made);
  EXPECT_NE(bad, nullptr);
  return bad != nullptr ? bad->reason : std::string();
}

std::string Hourly(const std::string& local_time, int samples) {
  Upload record;
  record.set_collection_id("2026-03-07T13H_5CG1234567-TH");
  record.set_local_time(local_time);
  record.set_sample_points_actual(static_cast<std::uint32_t>(samples));
  return record.SerializeAsString();
}

class RecordMakerTest : public testing::Test {
 protected:
  RecordMaker maker_{"1.0"};
};

TEST_F(RecordMakerTest, TellsMachineIdentityAndVersionOfALine) {
  const Record record = RecordOf(maker_.OfLine(
      std::string(kUploadStart) +
      R"("record":{"collectionId":"5CG1234567_2026-03-07T12:00:00","localTime":"2026-03-07T12:00:00.000Z"}})"));
  EXPECT_EQ(record.machine, "5CG1234567");
  EXPECT_EQ(record.collection_id, "5CG1234567_2026-03-07T12:00:00");
  EXPECT_EQ(record.contract_version, "1.0");
  Upload read;
  ASSERT_TRUE(read.ParseFromString(record.bytes));
  EXPECT_EQ(read.local_time(), "2026-03-07T12:00:00.000Z");
}

TEST_F(RecordMakerTest, TakesTheVersionThatALineTells) {
  EXPECT_EQ(
      RecordOf(maker_.OfLine(std::string(kUploadStart) + R"("contract_version":"0.9","record":{}})")).contract_version,
      "0.9");
}

TEST_F(RecordMakerTest, TakesTheMachineThatALineTellsWhereTheRecordNamesNone) {
  EXPECT_EQ(
      RecordOf(maker_.OfLine(std::string(kStoreStart) + R"("serial":"5CG1","record":{"memoryClockMhz":1}})")).machine,
      "5CG1");
}

TEST_F(RecordMakerTest, GivesAllRecordsOfAMachineWithALongSerialNumberOneKey) {
  const std::string serial = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  Upload live;
  live.set_local_time("2026-03-07T12:00:00.000Z");
  live.set_collection_id((serial + "_2026-03-07T12:00:00").substr(0, 30));
  Upload hourly;
  hourly.set_local_time("2026-03-07T12:00:00.000Z");
  hourly.set_collection_id(("2026-03-07T13H_" + serial + "-TH").substr(0, 30));
  EXPECT_EQ(RecordOf(maker_.OfBytes(UploadType(), live.SerializeAsString())).machine, "ABCDEFGHIJKLMNO");
  EXPECT_EQ(RecordOf(maker_.OfBytes(UploadType(), hourly.SerializeAsString())).machine, "ABCDEFGHIJKLMNO");
}

TEST_F(RecordMakerTest, GivesAnHourThatIsSentAgainLaterTheSamePart) {
  EXPECT_EQ(RecordOf(maker_.OfBytes(UploadType(), Hourly("2026-03-07T12:00:00.000Z", 60))).part,
            RecordOf(maker_.OfBytes(UploadType(), Hourly("2026-03-07T15:00:00.000Z", 60))).part);
}

TEST_F(RecordMakerTest, GivesTheHalvesOfAnHourDifferentParts) {
  EXPECT_NE(RecordOf(maker_.OfBytes(UploadType(), Hourly("2026-03-07T12:00:00.000Z", 30))).part,
            RecordOf(maker_.OfBytes(UploadType(), Hourly("2026-03-07T12:00:00.000Z", 29))).part);
}

TEST_F(RecordMakerTest, GivesALineAndItsBytesTheSamePart) {
  const Record of_bytes = RecordOf(maker_.OfBytes(UploadType(), Hourly("2026-03-07T12:00:00.000Z", 60)));
  const Record of_line =
      RecordOf(maker_.OfLine(std::string(kUploadStart) +
                             R"("record":{"collectionId":"2026-03-07T13H_5CG1234567-TH","samplePointsActual":60}})"));
  EXPECT_EQ(of_bytes.part, of_line.part);
}

TEST_F(RecordMakerTest, LeavesOutFieldsOfANewerContract) {
  const Record record = RecordOf(maker_.OfLine(
      std::string(kUploadStart) + R"("record":{"collectionId":"5CG1_2026-03-07T12:00:00","tyrePressure":3}})"));
  EXPECT_EQ(record.collection_id, "5CG1_2026-03-07T12:00:00");
}

TEST_F(RecordMakerTest, KeepsFieldsOfANewerContractThatComeAsBytes) {
  const std::string bytes = Hourly("2026-03-07T12:00:00.000Z", 60) + "\xF8\x3F\x05";  // field 1023
  EXPECT_EQ(RecordOf(maker_.OfBytes(UploadType(), bytes)).bytes, bytes);
}

TEST_F(RecordMakerTest, MendsTextsThatAreNoUtf8) {
  std::string bytes =
      "\x0A\x03"
      "a\xFF"
      "b"
      "\x12\x01t";
  Upload read;
  const Record record = RecordOf(maker_.OfBytes(UploadType(), bytes));
  ASSERT_TRUE(read.ParseFromString(record.bytes));
  EXPECT_EQ(read.collection_id(),
            "a\xEF\xBF\xBD"
            "b");
}

TEST_F(RecordMakerTest, TakesATextForNoRecord) {
  EXPECT_TRUE(
      std::holds_alternative<TextHandOver>(maker_.OfLine(R"({"handover":"send","type":"text","text":"hello"})")));
}

TEST_F(RecordMakerTest, SaysWhatIsWrongWithALine) {
  EXPECT_EQ(ReasonOf(maker_.OfLine("nothing")).find("this is no JSON; expected a hand-over"), 0U);
  EXPECT_EQ(ReasonOf(maker_.OfLine("[1]")).find("this is no JSON object"), 0U);
  EXPECT_EQ(ReasonOf(maker_.OfLine(R"({"type":"x.Y","record":{}})")).find("\"type\" names no record"), 0U);
  EXPECT_EQ(ReasonOf(maker_.OfLine(std::string(kUploadStart) + R"("record":7})")).find("\"record\" is missing"), 0U);
  EXPECT_EQ(ReasonOf(maker_.OfLine(std::string(kUploadStart) + R"("record":{"samplePointsActual":"many"}})"))
                .find("the record cannot be read as a zt.telemetry"),
            0U);
}

TEST_F(RecordMakerTest, RefusesJsonThatIsNestedBeyondAllMeasure) {
  EXPECT_NE(ReasonOf(maker_.OfLine(std::string(100'000, '['))), "");
}

TEST_F(RecordMakerTest, SaysWhatIsWrongWithBytes) {
  EXPECT_EQ(ReasonOf(maker_.OfBytes(UploadType(), "\x0A\x7F")), "these bytes are no " + UploadType());
  EXPECT_EQ(ReasonOf(maker_.OfBytes(UploadType(), "")).find("the record has neither an identity nor a time"), 0U);
  EXPECT_EQ(ReasonOf(maker_.OfBytes("x.Y", "")), "\"x.Y\" is no record of the contract");
}

}  // namespace
}  // namespace zt::telemetry::fleet
