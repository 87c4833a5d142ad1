#include <gmock/gmock.h>
#include <google/protobuf/util/delimited_message_util.h>
#include <gtest/gtest.h>

#include <sstream>

#include "host/failure.h"
#include "performance_samples_upload.pb.h"
#include "tests/host/report/report_of_records.h"

namespace zt::telemetry::host {
namespace {

using contract::upload::log::PcLogPerformanceSamplesAsCDM;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

class RecordInputTest : public ReportTest {};

TEST_F(RecordInputTest, BrokenLinesAreToldWithTheirPlaceAndTheRestIsShown) {
  const ProgramRun run =
      Report("{\"handover\":\n" + LiveLine("5CG1", "2026-03-07T14:00:00") +
             R"({"handover":"send","type":"no.such.Type","record":{}})" + "\n" +
             R"({"handover":"send","type":"text","text":"hello"})" + "\n[1]\n" + R"({"type":"a"})" + "\n");
  EXPECT_EQ(run.exit_code, kExitFailed);
  EXPECT_THAT(run.err, AllOf(HasSubstr("records.jsonl, line 1: this is no JSON"),
                             HasSubstr("line 3: the record type \"no.such.Type\" is unknown"),
                             HasSubstr("line 5: this is no JSON object"), HasSubstr("line 6: \"record\" is missing"),
                             HasSubstr("expected a hand-over as one line of JSON")));
  EXPECT_THAT(run.out, HasSubstr("1 record of 5CG1"));
  EXPECT_THAT(Data().at("notices"), SizeIs(5));
}

TEST_F(RecordInputTest, ThousandsOfBrokenLinesAreCounted) {
  std::string lines = LiveLine("5CG1", "2026-03-07T14:00:00");
  for (int i = 0; i < 1000; ++i) lines += "x\n";
  const ProgramRun run = Report(lines);
  EXPECT_THAT(Lines(run.err), SizeIs(21));
  EXPECT_THAT(run.err, HasSubstr("and 980 more that could not be read"));
}

TEST_F(RecordInputTest, JsonThatIsNestedWithoutEndIsABrokenLine) {
  const ProgramRun run = Report(LiveLine("5CG1", "2026-03-07T14:00:00") + std::string(1'000'000, '['));
  EXPECT_EQ(run.exit_code, kExitFailed);
  EXPECT_THAT(run.err, HasSubstr("line 2: "));
}

TEST_F(RecordInputTest, FieldsOfANewerCollectorAreToldOfAndTheRestIsShown) {
  const ProgramRun run =
      Report(LiveLine("5CG1", "2026-03-07T14:00:00", R"({"newerInfo":1,"batteriesInfo":[{"cycleCount":7}]})"));
  EXPECT_THAT(run.err, HasSubstr("line 1: the record has fields that this program does not know"));
  EXPECT_THAT(Column(kBatteries, "cycle_count"), ElementsAre(7));
}

std::string Delimited(const PcLogPerformanceSamplesAsCDM& record) {
  std::ostringstream stream;
  google::protobuf::util::SerializeDelimitedToOstream(record, &stream);
  return stream.str();
}

PcLogPerformanceSamplesAsCDM LiveRecord(const std::string& serial) {
  PcLogPerformanceSamplesAsCDM record;
  record.set_collection_id(serial + "_2026-03-07T14:00:00.000Z");
  record.set_local_time("2026-03-07T14:00:00.000Z");
  record.mutable_hw_info()->add_batteries_info()->set_cycle_count(7);
  return record;
}

TEST_F(RecordInputTest, ReadsRecordsBehindTheirLengths) {
  const ProgramRun run = Report(Delimited(LiveRecord("5CG1")) + Delimited(LiveRecord("5CG1")));
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_THAT(Column(kBatteries, "cycle_count"), ElementsAre(7));
}

// Its length is the brace with which lines of JSON begin.
TEST_F(RecordInputTest, ReadsARecordOf123Bytes) {
  PcLogPerformanceSamplesAsCDM record = LiveRecord("5CG1");
  while (record.ByteSizeLong() < '{')
    record.mutable_hw_info()->mutable_batteries_info(0)->mutable_charge_state()->push_back('x');
  ASSERT_EQ(record.ByteSizeLong(), std::size_t{'{'});
  const ProgramRun run = Report(Delimited(record));
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
}

TEST_F(RecordInputTest, ABrokenRecordIsToldWithItsPlaceAndTheRestIsShown) {
  const std::string good = Delimited(LiveRecord("5CG1"));
  const ProgramRun run = Report(good + std::string("\x02\xFF\xFF", 3) + good.substr(0, good.size() - 5));
  EXPECT_EQ(run.exit_code, kExitFailed);
  EXPECT_THAT(run.err,
              AllOf(HasSubstr("record 2 at byte " + std::to_string(good.size()) + ": these bytes are no such record"),
                    HasSubstr("record 3 at byte " + std::to_string(good.size() + 3) + ": the file ends before")));
  EXPECT_THAT(run.out, HasSubstr("1 record of 5CG1"));
}

TEST_F(RecordInputTest, ATextOfARecordInProtobufsFormThatIsNoUtf8IsShownMended) {
  std::string bytes = Delimited(LiveRecord("5CG@"));
  bytes.replace(bytes.find('@'), 1, "\xFF");
  const ProgramRun run = Report(bytes);
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_EQ(Data().at("machine").at("serial"), "5CG\xEF\xBF\xBD");
}

TEST_F(RecordInputTest, ReadsAnOutboxAndWhatItExportsAlike) {
  RunProgram({"seed", "--database-dir", folder_.File("d"), "--hours", "2", "--until", "2026-03-07T14:00:00Z"});
  RunProgram({"collect", "--machine", "convertible-laptop", "--database-dir", folder_.File("d"), "--outbox",
              folder_.File("o")});
  RunProgram({"outbox", "export", "--outbox", folder_.File("o"), "--output", folder_.File("o.jsonl")});
  const ProgramRun run = RunProgram({"report", "--outbox", folder_.File("o"), "--output", folder_.File("report.html")});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_THAT(run.out, HasSubstr("6 records of"));
  const std::string of_outbox = DataText();
  ReportOf({folder_.File("o.jsonl")});
  EXPECT_EQ(DataText(), of_outbox);
}

TEST_F(RecordInputTest, WithoutAnInputItReadsTheOutboxOfTheConfiguration) {
  WriteFile(folder_.Path() / "host.toml", "[outbox]\nfolder = \"box\"\n");
  RunProgram({"simulate", "--hours", "2", "--until", "2026-03-07T14:00:00Z", "--outbox", folder_.File("box")});
  const ProgramRun run =
      RunProgram({"report", "--config", folder_.File("host.toml"), "--output", folder_.File("report.html")});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_THAT(run.out, HasSubstr(": 4 records of 5CG0000001"));
}

}  // namespace
}  // namespace zt::telemetry::host
