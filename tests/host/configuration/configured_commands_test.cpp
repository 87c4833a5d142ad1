// What the commands make of the configuration.
#include <gmock/gmock.h>

#include "host/failure.h"
#include "host/outbox/kept_record.h"
#include "host/outbox/outbox.h"
#include "support/seed_database.h"
#include "support/temporary_folder.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

constexpr std::int64_t kMebibyte = 1024 * 1024;
// Its processes cannot be asked for, which is logged as a warning.
constexpr char kLoggingMachine[] = R"({
    "session": {"tick_counts_ms": [60000], "last_input_tick_ms": 0},
    "processes": [{"id": 7, "user_100ns": 20000000, "peak_working_set_bytes": 1, "working_set_bytes": 1}],
    "wmi": {"classes": {"Win32_PerfFormattedData_PerfProc_Process":
                [{"Name": "busy", "IDProcess": 7, "PercentProcessorTime": "5", "PriorityBase": 8}]},
            "failures": [{"query_contains": "FROM Win32_Process WHERE", "status": 5}]}})";

// The program over the laptop, with a configuration.
class ConfiguredCommandsTest : public testing::Test {
 protected:
  void Configure(const std::string& text) const { WriteFile(folder_.Path() / "host.toml", text); }

  ProgramRun Run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"--config", folder_.File("host.toml")});
    return RunProgram(arguments);
  }

  ProgramRun Collect(std::vector<std::string> options = {}) const {
    options.insert(options.begin(), {"collect", "--machine", "convertible-laptop", "--database-dir", folder_.Utf8()});
    return Run(options);
  }

  fs::path Box() const { return folder_.Path() / "box"; }

  zt::tests::TemporaryFolder folder_;
};

TEST_F(ConfiguredCommandsTest, CollectKeepsTheHandOversInTheOutboxOfTheConfiguration) {
  Configure("[outbox]\nfolder = \"box\"\n");
  const ProgramRun run = Collect();
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_THAT(run.out, HasSubstr("kept 2 hand-overs in "));
  EXPECT_EQ(Outbox::Existing(Box()).Figures().current, 2);
}

TEST_F(ConfiguredCommandsTest, TheCommandLineNamesAnotherOutbox) {
  Configure("[outbox]\nfolder = \"box\"\n");
  EXPECT_EQ(Collect({"--outbox", folder_.File("other")}).exit_code, kExitDone);
  EXPECT_FALSE(fs::exists(Box()));
  EXPECT_EQ(Outbox::Existing(folder_.Path() / "other").Figures().current, 2);
}

TEST_F(ConfiguredCommandsTest, WhoSaysHowHandOversAreShownSeesThem) {
  Configure("[outbox]\nfolder = \"box\"\n");
  EXPECT_THAT(JsonLinesOf(Collect({"--format", "json"}).out), SizeIs(2));
  EXPECT_EQ(Collect({"--output", folder_.File("out.txt")}).out, "");
  EXPECT_THAT(ReadFile(folder_.Path() / "out.txt"), HasSubstr("SENT PcLogPerformanceSamplesAsCDM"));
  EXPECT_FALSE(fs::exists(Box()));
}

TEST_F(ConfiguredCommandsTest, LookKeepsNothing) {
  Configure("[outbox]\nfolder = \"box\"\n");
  EXPECT_THAT(Run({"look", "--machine", "convertible-laptop"}).out, HasSubstr("SENT PcLogPerformanceSamplesAsCDM"));
  EXPECT_FALSE(fs::exists(Box()));
}

TEST_F(ConfiguredCommandsTest, TheOutboxCommandTakesItsFolderToo) {
  Configure("[outbox]\nfolder = \"box\"\n");
  Collect();
  EXPECT_THAT(Lines(Run({"outbox", "list"}).out), SizeIs(3));
}

TEST_F(ConfiguredCommandsTest, WithoutAnyFolderTheOutboxCommandSaysWhereItIsExpected) {
  Configure("");
  const ProgramRun run = Run({"outbox", "list"});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err,
              HasSubstr("--outbox is missing; expected the folder of an outbox here, or as outbox.folder in "));
}

TEST_F(ConfiguredCommandsTest, CollectHoldsTheOutboxToItsSizeAndTellsWhatItDropped) {
  Configure("[outbox]\nfolder = \"box\"\nmax_bytes = 1048576\n");
  Outbox(Box()).Keep({KeptText(std::string(2 * kMebibyte, 'x'))}, std::nullopt);
  const ProgramRun run = Collect();
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_THAT(run.err, HasSubstr("the outbox was beyond its limits: deleted 0 hand-overs that were delivered, replaced "
                                 "or sent again, and 1 that were not delivered"));
  const OutboxFigures figures = Outbox::Existing(Box()).Figures();
  EXPECT_EQ(figures.current, 2);
  EXPECT_EQ(figures.dropped, 1);
  EXPECT_LE(figures.bytes, kMebibyte);
}

TEST_F(ConfiguredCommandsTest, CollectDeletesWhatWasDeliveredAndIsOlderThanTheConfigurationKeeps) {
  Configure("[outbox]\nfolder = \"box\"\nmax_days = 3\n");
  {
    Outbox outbox(Box());
    outbox.Keep({KeptText("old"), KeptText("new"), KeptText("never delivered")}, std::nullopt);
    outbox.CountDeliveries({1, 2});
  }
  OpenedDatabase(Box() / "outbox.db")
      .Execute("UPDATE hand_overs SET arrived_ms = arrived_ms - 4 * 86400000 WHERE id <> 2");
  EXPECT_THAT(Collect().err, HasSubstr("deleted 1 hand-overs that were delivered"));
  const Outbox outbox = Outbox::Existing(Box());
  EXPECT_FALSE(outbox.Find(1).has_value());
  EXPECT_TRUE(outbox.Find(2).has_value());
  EXPECT_TRUE(outbox.Find(3).has_value());
}

TEST_F(ConfiguredCommandsTest, WithinItsLimitsNothingIsSaid) {
  Configure("[outbox]\nfolder = \"box\"\n");
  EXPECT_EQ(Collect().err, "");
}

TEST_F(ConfiguredCommandsTest, PruneTakesTheLimitsOfTheConfigurationUnlessItIsGivenOthers) {
  Configure("[outbox]\nfolder = \"box\"\nmax_bytes = 1048576\n");
  Outbox(Box()).Keep({KeptText(std::string(2 * kMebibyte, 'x'))}, std::nullopt);
  EXPECT_THAT(Run({"outbox", "prune", "--max-bytes", "9999999"}).out, HasSubstr("and 0 that were not delivered"));
  EXPECT_THAT(Run({"outbox", "prune"}).out, HasSubstr("and 1 that were not delivered"));
}

TEST_F(ConfiguredCommandsTest, EveryCommandThatLogsTakesLevelAndFileOfTheConfiguration) {
  Configure("[log]\nlevel = \"warning\"\nfile = \"host.log\"\n");
  WriteFile(folder_.Path() / "machine.json", kLoggingMachine);
  const std::vector<std::pair<std::string, std::string>> commands = {{"look", folder_.File("machine.json")},
                                                                     {"collect", folder_.File("machine.json")},
                                                                     {"doctor", folder_.File("machine.json")},
                                                                     {"network", "failing"}};
  for (const auto& [command, machine] : commands) {
    const ProgramRun run = Run({command, "--machine", machine});
    EXPECT_THAT(run.err, Not(HasSubstr(" ["))) << command;
    EXPECT_THAT(ReadFile(folder_.Path() / "host.log"), HasSubstr(" [zt::telemetry")) << command;
    fs::remove(folder_.Path() / "host.log");
  }
}

TEST_F(ConfiguredCommandsTest, TheCommandLineSaysAnotherLevelAndAnotherFile) {
  Configure("[log]\nlevel = \"none\"\nfile = \"host.log\"\n");
  Run({"look", "--machine", "failing", "--log-level", "error", "--log-file", folder_.File("other.log")});
  EXPECT_THAT(ReadFile(folder_.Path() / "other.log"), HasSubstr("ERROR ["));
  EXPECT_FALSE(fs::exists(folder_.Path() / "host.log"));
}

TEST_F(ConfiguredCommandsTest, TheLogIsAddedToAndOneThatIsLargeIsKeptUnderAnotherName) {
  Configure("[log]\nlevel = \"error\"\nfile = \"host.log\"\n");
  const fs::path log = folder_.Path() / "host.log";
  Run({"look", "--machine", "failing"});
  const auto once = fs::file_size(log);
  Run({"look", "--machine", "failing"});
  EXPECT_GT(fs::file_size(log), once);
  WriteFile(log, std::string(4 * kMebibyte, '-'));
  Run({"look", "--machine", "failing"});
  EXPECT_LT(fs::file_size(log), kMebibyte);
  EXPECT_EQ(fs::file_size(folder_.Path() / "host.log.1"), 4U * kMebibyte);
}

TEST_F(ConfiguredCommandsTest, ALogFileThatCannotBeWrittenIsWrongUsageBeforeAnythingIsHandedOver) {
  Configure("[log]\nfile = \"none/host.log\"\n");
  const ProgramRun run = Run({"look", "--machine", "convertible-laptop"});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, AllOf(HasSubstr("the log file "), HasSubstr("host.log cannot be written")));
}

}  // namespace
}  // namespace zt::telemetry::host
