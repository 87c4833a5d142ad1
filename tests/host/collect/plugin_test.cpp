#include <gmock/gmock.h>

#include <regex>

#include "host/failure.h"
#include "support/temporary_folder.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

// Runs the scripted plugin that lies beside the tests (scripted_plugin.cpp tells what each event does).
ProgramRun RunScripted(const std::vector<std::string>& options) {
  std::vector<std::string> arguments = {"collect", "--machine", "bare", "--plugin", ZT_SCRIPTED_PLUGIN};
  arguments.insert(arguments.end(), options.begin(), options.end());
  return RunProgram(arguments);
}

TEST(PluginTest, AnOutcomeThatFailedEndsWithExitCode1AndIsTold) {
  const ProgramRun run = RunScripted({"--event", "1"});
  EXPECT_EQ(run.exit_code, kExitFailed);
  EXPECT_THAT(run.err, HasSubstr("event 1 failed: scripted failure (kind 5, code -7)\n"));
}

TEST(PluginTest, ACodeWithoutAKindIsAFailureToo) {
  const ProgramRun run = RunScripted({"--event", "2"});
  EXPECT_EQ(run.exit_code, kExitFailed);
  EXPECT_THAT(run.err, HasSubstr("(kind 0, code 9)"));
}

TEST(PluginTest, AnOutcomeThatIsMissingOrNonsenseIsAFailure) {
  for (const char* event : {"3", "4", "5"}) EXPECT_EQ(RunScripted({"--event", event}).exit_code, kExitFailed) << event;
  EXPECT_THAT(RunScripted({"--event", "3"}).err, HasSubstr("The plugin reported no outcome"));
  EXPECT_THAT(RunScripted({"--event", "4"}).err, HasSubstr("The plugin's outcome cannot be understood: nonsense"));
}

TEST(PluginTest, EventsAfterAFailedOneRunAllTheSame) {
  const ProgramRun run = RunScripted({"--event", "1", "--event", "6", "--format", "json"});
  EXPECT_EQ(run.exit_code, kExitFailed);
  EXPECT_EQ(JsonLinesOf(run.out).at(0)["text"], "call 2");
}

TEST(PluginTest, AllEventsRunOnOneModuleObject) {
  const ProgramRun run = RunScripted({"--event", "6", "--event", "6", "--event", "6", "--format", "json"});
  EXPECT_EQ(run.exit_code, kExitDone);
  const auto lines = JsonLinesOf(run.out);
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[2]["text"], "call 3");
}

TEST(PluginTest, AnEventThatHandsNothingOverIsTold) {
  const ProgramRun run = RunScripted({"--event", "0"});
  EXPECT_EQ(run.exit_code, kExitDone);
  EXPECT_EQ(run.out, "");
  EXPECT_THAT(run.err, HasSubstr("event 0: nothing was handed over\n"));
}

TEST(PluginTest, ThePluginsLogComesWithTimeSeverityAndPlaceInUtf8) {
  const ProgramRun run = RunScripted({"--event", "0", "--log-level", "debug"});
  const std::regex line("[0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3} ERROR \\[Scripted::Start:12\\] severity 5 für 日本\n");
  EXPECT_TRUE(std::regex_search(run.err, line)) << run.err;
}

TEST(PluginTest, AnOutputThatTakesNothingEndsWithExitCode1) {
  std::ostringstream out;
  std::ostringstream err;
  out.setstate(std::ios::badbit);
  EXPECT_EQ(host::Run({"--machine", "bare", "--plugin", ZT_SCRIPTED_PLUGIN, "--event", "6"}, out, err), kExitFailed);
  EXPECT_THAT(err.str(), HasSubstr("a hand-over could not be written: the output cannot be written"));
}

TEST(PluginTest, APluginThatDoesNotExistIsWrongUsageAndNamed) {
  const ProgramRun run = RunProgram({"--machine", "bare", "--plugin", "no such plugin"});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_EQ(run.err, "zt-telemetry-host: the plugin no such plugin does not exist\n");
}

TEST(PluginTest, AFolderIsNoPlugin) {
  const zt::tests::TemporaryFolder folder;
  const ProgramRun run = RunProgram({"--machine", "bare", "--plugin", ToText(folder.Path())});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, HasSubstr("is a folder, not a file"));
}

TEST(PluginTest, AFileThatIsNoLibraryIsWrongUsageWithTheSystemsReason) {
  const zt::tests::TemporaryFolder folder;
  WriteFile(folder.Path() / "plugin.dll", "this is no library");
  const ProgramRun run = RunProgram({"--machine", "bare", "--plugin", folder.File("plugin.dll")});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, testing::ContainsRegex("cannot load .*plugin.dll: .+"));
}

TEST(PluginTest, ALibraryThatIsNoPluginIsWrongUsageAndTheMissingNameIsTold) {
  const ProgramRun run = RunProgram({"--machine", "bare", "--plugin", ZT_OTHER_LIBRARY});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, HasSubstr("exports no \"LoadPlugin\""));
}

}  // namespace
}  // namespace zt::telemetry::host
