#include <gmock/gmock.h>
#include <google/protobuf/util/delimited_message_util.h>
#include <gtest/gtest.h>

#include "host/failure.h"
#include "performance_samples_upload.pb.h"
#include "support/temporary_folder.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

using testing::HasSubstr;
using testing::SizeIs;

// The outbox of one collection of two hours on the laptop: four hourly records, the stored one and the live one.
class OutboxCommandTest : public testing::Test {
 protected:
  OutboxCommandTest() {
    RunProgram({"seed", "--database-dir", folder_.File("d"), "--hours", "2", "--until", "2026-03-07T14:00:00Z"});
    collected_ = RunProgram({"collect", "--machine", "convertible-laptop", "--database-dir", folder_.File("d"),
                             "--outbox", folder_.File("o")});
  }

  ProgramRun Outbox(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "outbox");
    arguments.insert(arguments.end(), {"--outbox", folder_.File("o")});
    return RunProgram(arguments);
  }

  zt::tests::TemporaryFolder folder_;
  ProgramRun collected_;
};

TEST_F(OutboxCommandTest, ACollectionIntoAnOutboxSaysWhatItHasKept) {
  EXPECT_EQ(collected_.exit_code, kExitDone) << collected_.err;
  EXPECT_THAT(collected_.out, HasSubstr("kept 6 hand-overs in "));
  EXPECT_THAT(collected_.out, HasSubstr("made of 480 stored samples"));
}

TEST_F(OutboxCommandTest, ListHasALineForEachHandOver) {
  const ProgramRun run = Outbox({"list"});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_THAT(Lines(run.out), SizeIs(7));
  EXPECT_THAT(run.out, AllOf(HasSubstr("collection"), HasSubstr("-TH"), HasSubstr("-NE"), HasSubstr("current")));
}

TEST_F(OutboxCommandTest, ListGoesOnBehindANumber) {
  const std::vector<std::string> lines = Lines(Outbox({"list", "--after", "2", "--count", "3"}).out);
  ASSERT_THAT(lines, SizeIs(4));
  EXPECT_THAT(lines[1], testing::StartsWith(" 3"));
}

TEST_F(OutboxCommandTest, ShowIsTheRecordForPeople) {
  EXPECT_THAT(Outbox({"show", "1"}).out, HasSubstr("SENT PcLogPerformanceSamplesAsCDM  2026-03-07T12H_5CG0000001-TH"));
}

TEST_F(OutboxCommandTest, ShowOfANumberThatIsNotThereIsWrongUsage) {
  const ProgramRun run = Outbox({"show", "99"});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, HasSubstr("there is no hand-over 99 in this outbox"));
}

TEST_F(OutboxCommandTest, TheExportIsWhatACollectionWouldHavePrinted) {
  RunProgram({"seed", "--database-dir", folder_.File("d"), "--hours", "2", "--until", "2026-03-07T14:00:00Z"});
  const ProgramRun printed =
      RunProgram({"look", "--machine", "convertible-laptop", "--database-dir", folder_.File("d"), "--format", "json"});
  const std::vector<nlohmann::json> expected = JsonLinesOf(printed.out);
  const std::vector<nlohmann::json> exported = JsonLinesOf(Outbox({"export"}).out);
  ASSERT_EQ(exported.size(), expected.size());
  for (std::size_t i = 0; i + 1 < expected.size(); ++i) {  // the live record counts those that were sent before it
    EXPECT_EQ(exported[i], expected[i]) << i;
  }
}

TEST_F(OutboxCommandTest, TheProtobufExportHoldsTheUploadsBehindTheirLengths) {
  const ProgramRun run = Outbox({"export", "--format", "protobuf", "--output", folder_.File("records.bin")});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  std::istringstream bytes(ReadFile(folder_.Path() / "records.bin"));
  google::protobuf::io::IstreamInputStream stream(&bytes);
  contract::upload::log::PcLogPerformanceSamplesAsCDM record;
  std::vector<std::string> ids;
  bool clean_end = false;
  while (google::protobuf::util::ParseDelimitedFromZeroCopyStream(&record, &stream, &clean_end)) {
    ids.push_back(record.collection_id());
    record.Clear();
  }
  EXPECT_TRUE(clean_end);
  ASSERT_THAT(ids, SizeIs(5));
  EXPECT_EQ(ids[0], "2026-03-07T12H_5CG0000001-TH");
}

TEST_F(OutboxCommandTest, PruneToNothingDropsAndCounts) {
  EXPECT_THAT(Outbox({"prune", "--max-bytes", "0"}).out, HasSubstr("6 that were not delivered"));
  EXPECT_THAT(Outbox({"list"}).out, HasSubstr("nothing is kept"));
  EXPECT_THAT(Outbox({"status"}).out, HasSubstr("dropped for the size"));
}

TEST_F(OutboxCommandTest, WithoutAnOutboxItIsWrongUsage) {
  const ProgramRun run = RunProgram({"outbox", "list", "--outbox", folder_.File("none")});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, HasSubstr("there is no outbox"));
}

}  // namespace
}  // namespace zt::telemetry::host
