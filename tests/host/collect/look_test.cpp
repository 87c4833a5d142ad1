#include <gmock/gmock.h>

#include "host/failure.h"
#include "support/file_calls.h"
#include "support/sample_store_fixture.h"
#include "support/seed_database.h"
#include "support/temporary_folder.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::SizeIs;
using zt::tests::SampleStore;

constexpr char kRows[] = "SELECT (SELECT COUNT(*) FROM ThermalData) + (SELECT COUNT(*) FROM NetworkData)";

// A database of two hours, and the program over a simulated laptop.
class LookTest : public testing::Test {
 protected:
  LookTest() {
    RunProgram({"seed", "--database-dir", folder_.File("d"), "--hours", "2", "--until", "2026-03-07T14:00:00Z"});
  }

  ProgramRun Run(std::vector<std::string> arguments) const {
    for (const char* more : {"--machine", "convertible-laptop", "--format", "json", "--database-dir"}) {
      arguments.emplace_back(more);
    }
    arguments.push_back(folder_.File("d"));
    return RunProgram(arguments);
  }

  zt::tests::TemporaryFolder folder_;
  const fs::path file_ = folder_.Path() / "d" / "ssm.db";
};

TEST_F(LookTest, ShowsWhatACollectionWouldAndLeavesTheSamples) {
  const std::string before = ReadFile(file_);
  const ProgramRun looked = Run({"look"});
  EXPECT_EQ(looked.exit_code, kExitDone) << looked.err;
  EXPECT_THAT(JsonLinesOf(looked.out), SizeIs(6));
  EXPECT_EQ(ReadFile(file_), before);
}

TEST_F(LookTest, IsWhatTheProgramDoesWithoutACommand) {
  const ProgramRun looked = Run({});
  EXPECT_THAT(JsonLinesOf(looked.out), SizeIs(6));
  EXPECT_EQ(OpenedDatabase(file_).Number(kRows), 480);
}

TEST_F(LookTest, ReadsAFileThatMayOnlyBeRead) {
  fs::permissions(file_, fs::perms::owner_read);
  const ProgramRun looked = Run({"look"});
  EXPECT_EQ(looked.exit_code, kExitDone) << looked.err;
  EXPECT_THAT(JsonLinesOf(looked.out), SizeIs(6));
}

TEST_F(LookTest, TellsThatADatabaseCannotBeReadAndShowsTheRest) {
  WriteFile(file_, "This is no database, whatever its name says.");
  const ProgramRun looked = Run({"look"});
  EXPECT_EQ(looked.exit_code, kExitFailed);
  EXPECT_THAT(looked.err,
              AllOf(HasSubstr("the stored samples cannot be read"), HasSubstr("ssm.db"), HasSubstr("not a database")));
  EXPECT_THAT(JsonLinesOf(looked.out), SizeIs(2));
}

TEST_F(LookTest, TellsThatSomebodyHoldsTheDatabaseAndShowsTheRest) {
  SampleStore writer(ToText(file_));
  writer.Execute("BEGIN EXCLUSIVE");
  const zt::tests::FileCalls no_waits([](const zt::tests::FileCall&) { return SQLITE_OK; });
  const ProgramRun looked = Run({"look"});
  EXPECT_EQ(looked.exit_code, kExitFailed);
  EXPECT_THAT(looked.err, AllOf(HasSubstr("the stored samples cannot be read, and stay for another time"),
                                HasSubstr("ssm.db"), HasSubstr("database is locked")));
  EXPECT_THAT(JsonLinesOf(looked.out), SizeIs(2));
}

TEST_F(LookTest, HasNoOutbox) {
  EXPECT_EQ(Run({"look", "--outbox", "x"}).exit_code, kExitWrongUsage);
}

// A stream that takes nothing, as a full disk or a closed pipe.
class NoStream : public std::ostream {
 public:
  NoStream() : std::ostream(nullptr) {}
};

TEST_F(LookTest, ACollectionThatCannotBePrintedTakesNothing) {
  NoStream out;
  std::ostringstream err;
  const int code =
      host::Run({"collect", "--machine", "convertible-laptop", "--database-dir", folder_.File("d")}, out, err);
  EXPECT_EQ(code, kExitFailed);
  EXPECT_THAT(err.str(), HasSubstr("the stored samples stay as they are"));
  EXPECT_EQ(OpenedDatabase(file_).Number(kRows), 480);
}

TEST_F(LookTest, ACollectionTakesWhatItHasPrinted) {
  EXPECT_EQ(Run({"collect"}).exit_code, kExitDone);
  EXPECT_EQ(OpenedDatabase(file_).Number(kRows), 0);
}

}  // namespace
}  // namespace zt::telemetry::host
