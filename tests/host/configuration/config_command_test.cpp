#include <gmock/gmock.h>

#include <regex>

#include "host/consent/keyed_hash.h"
#include "host/failure.h"
#include "support/temporary_folder.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr char kSettings[] = R"([outbox]
max_days = 7
folder = "box"

[log]
level = "info"

[redact]
serial_numbers = "hash"
key = "5ec2e75ec2e75ec2e75ec2e75ec2e75ec2e75ec2e75ec2e75ec2e75ec2e75ec2"
)";

class ConfigCommandTest : public testing::Test {
 protected:
  std::string File(const std::string& text) const {
    WriteFile(folder_.Path() / "host.toml", text);
    return folder_.File("host.toml");
  }

  ProgramRun Show(const std::string& text, const std::vector<std::string>& options = {}) const {
    std::vector<std::string> arguments = {"config", "show", "--config", File(text)};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunProgram(arguments);
  }

  zt::tests::TemporaryFolder folder_;
};

TEST_F(ConfigCommandTest, CheckSaysThatNothingIsWrong) {
  const ProgramRun run = RunProgram({"config", "check", "--config", File(kSettings)});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_THAT(run.out, EndsWith("host.toml: nothing is wrong\n"));
}

TEST_F(ConfigCommandTest, CheckTellsAllThatIsWrongWithFileAndLine) {
  const ProgramRun run =
      RunProgram({"config", "check", "--config", File("[outbox]\nmax_days = 0\n\n[sections]\nbattery = false\n")});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, AllOf(HasSubstr("host.toml:2: outbox.max_days: expected a whole number from 1 to 36500"),
                             HasSubstr("host.toml:5: sections.battery: there is no such key")));
}

TEST_F(ConfigCommandTest, EveryCommandRefusesAConfigurationThatIsWrongBeforeItDoesAnything) {
  const std::string file = File("[log]\nlevel = 1\n");
  const std::vector<std::vector<std::string>> commands = {
      {"look", "--machine", "bare", "--output", folder_.File("out")},
      {"collect", "--machine", "bare", "--output", folder_.File("out")},
      {"doctor", "--machine", "bare"},
      {"network", "--machine", "bare"},
      {"outbox", "status", "--outbox", folder_.File("o")},
      {"config", "show"}};
  for (std::vector<std::string> command : commands) {
    command.insert(command.end(), {"--config", file});
    const ProgramRun run = RunProgram(command);
    EXPECT_EQ(run.exit_code, kExitWrongUsage) << command.front();
    EXPECT_THAT(run.err, HasSubstr("host.toml:2: log.level: expected one of")) << command.front();
    EXPECT_EQ(run.out, "") << command.front();
  }
  EXPECT_FALSE(std::filesystem::exists(folder_.Path() / "out"));
}

TEST_F(ConfigCommandTest, AFileThatIsNamedHasToBeThereAndToBeAFile) {
  const ProgramRun missing = RunProgram({"config", "check", "--config", folder_.File("none.toml")});
  EXPECT_EQ(missing.exit_code, kExitWrongUsage);
  EXPECT_THAT(missing.err, HasSubstr("none.toml: there is no such file"));
  const ProgramRun folder = RunProgram({"config", "check", "--config", folder_.Utf8()});
  EXPECT_EQ(folder.exit_code, kExitWrongUsage);
  EXPECT_THAT(folder.err, HasSubstr("this is a folder"));
}

TEST_F(ConfigCommandTest, AFileThatIsTooLargeToBeOneIsRefused) {
  const ProgramRun run = RunProgram({"config", "check", "--config", File(std::string(1024 * 1024 + 1, '#'))});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, HasSubstr("larger than a configuration"));
}

TEST_F(ConfigCommandTest, ShowTellsWhatHoldsAndWhereItComesFrom) {
  const ProgramRun run = Show(kSettings, {"--log-level", "debug"});
  EXPECT_EQ(run.exit_code, kExitDone) << run.err;
  EXPECT_THAT(run.out, StartsWith("file: "));
  EXPECT_THAT(run.out, AllOf(ContainsRegex("\noutbox.folder +.*box +file, line 3\n"),
                             ContainsRegex("\noutbox.max_bytes +268435456 +default\n"),
                             ContainsRegex("\noutbox.max_days +7 +file, line 2\n"),
                             ContainsRegex("\nlog.level +debug +command line\n"),
                             ContainsRegex("\nsections.session +true +default\n"),
                             ContainsRegex("\nredact.serial_numbers +hash +file, line 9\n")));
}

TEST_F(ConfigCommandTest, ShowTellsEverySettingOfTheCommandLine) {
  const ProgramRun run = Show("", {"--outbox", "o", "--max-bytes", "5", "--max-days", "6", "--log-file", "l"});
  EXPECT_THAT(
      run.out,
      AllOf(ContainsRegex("\noutbox.folder +o +command line\n"), ContainsRegex("\noutbox.max_bytes +5 +command line\n"),
            ContainsRegex("\noutbox.max_days +6 +command line\n"), ContainsRegex("\nlog.file +l +command line\n")));
}

TEST_F(ConfigCommandTest, ShowDoesNotShowTheKey) {
  EXPECT_THAT(Show(kSettings).out,
              AllOf(ContainsRegex("\nredact.key +set; not shown +file, line 10\n"), Not(HasSubstr("5ec2e7"))));
}

TEST_F(ConfigCommandTest, ANewKeyIsOneThatTheFileTakesAndAnotherOneEachTime) {
  const ProgramRun first = RunProgram({"config", "new-key"});
  EXPECT_TRUE(std::regex_match(first.out, std::regex("[0-9a-f]{64}\n"))) << first.out;
  EXPECT_NE(first.out, RunProgram({"config", "new-key"}).out);
}

}  // namespace
}  // namespace zt::telemetry::host
