#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

#include "host/failure.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

// The names of the options that the help of a command lists.
std::vector<std::string> OptionsInHelp(const std::string& command) {
  std::vector<std::string> names;
  for (const std::string& line : Lines(RunProgram({command, "--help"}).out)) {
    const std::size_t dashes = line.find("--");
    if (!line.starts_with("  -") || dashes == std::string::npos) continue;
    names.push_back(line.substr(dashes, line.find_first_of(" ,", dashes) - dashes));
  }
  return names;
}

// The line of a script that lists what may stand behind a command.
std::string LineWith(const std::string& script, const std::string& begin) {
  for (const std::string& line : Lines(script)) {
    if (line.starts_with(begin)) return line;
  }
  return {};
}

TEST(CompletionTest, BothShellsKnowEveryOptionOfEveryCommand) {
  const std::string bash = RunProgram({"completion", "bash"}).out;
  const std::string powershell = RunProgram({"completion", "powershell"}).out;
  for (const std::string command : {"look", "collect", "doctor", "network", "seed"}) {
    const std::vector<std::string> options = OptionsInHelp(command);
    EXPECT_GT(options.size(), 3U) << command;
    for (const std::string& option : options) {
      EXPECT_THAT(LineWith(bash, "        ' " + command + "') values='") + " ", HasSubstr(option)) << command;
      EXPECT_THAT(LineWith(powershell, "        '" + command + "' = @("), HasSubstr("'" + option + "'")) << command;
    }
  }
}

TEST(CompletionTest, AShellThatIsNotKnownIsWrongUsage) {
  const ProgramRun run = RunProgram({"completion", "fish"});
  EXPECT_EQ(run.exit_code, kExitWrongUsage);
  EXPECT_THAT(run.err, HasSubstr("expected one of bash, powershell, but got \"fish\""));
}

// There is no PowerShell where these tests run: what can be said of the text without one.
TEST(PowerShellCompletionTest, BracketsAreClosedInTheirOrderAndTextsToo) {
  std::vector<char> open;
  bool in_text = false;
  bool in_comment = false;
  char quote = 0;
  for (const char character : RunProgram({"completion", "powershell"}).out) {
    if (character == '\n') in_comment = false;
    if (in_comment) continue;
    if (in_text) {
      in_text = character != quote;
    } else if (character == '\'' || character == '"') {
      in_text = true;
      quote = character;
    } else if (character == '#') {
      in_comment = true;
    } else if (character == '{' || character == '(' || character == '[') {
      open.push_back(character == '{' ? '}' : character == '(' ? ')' : ']');
    } else if (character == '}' || character == ')' || character == ']') {
      ASSERT_FALSE(open.empty());
      ASSERT_EQ(character, open.back());
      open.pop_back();
    }
  }
  EXPECT_TRUE(open.empty());
  EXPECT_FALSE(in_text);
}

TEST(PowerShellCompletionTest, TablesHaveAKeyAndAValueOnEachLine) {
  bool in_table = false;
  std::vector<std::string> rows;
  for (const std::string& line : Lines(RunProgram({"completion", "powershell"}).out)) {
    if (line == "    }") in_table = false;
    if (in_table) rows.push_back(line);
    if (line.ends_with(" = @{")) in_table = true;
  }
  EXPECT_GT(rows.size(), 100U);
  const std::regex row_form("        '[^']*' = (@\\(('[^']+'(, '[^']+')*)?\\)|'([^']|'')+')");
  for (const std::string& row : rows) EXPECT_TRUE(std::regex_match(row, row_form)) << row;
}

// A table with a key twice is no table.
TEST(PowerShellCompletionTest, NoKeyComesTwiceInATable) {
  std::vector<std::string> keys;
  for (const std::string& line : Lines(RunProgram({"completion", "powershell"}).out)) {
    if (line.ends_with(" = @{")) keys.clear();
    if (!line.starts_with("        '")) continue;
    const std::string key = line.substr(0, line.find(" = "));
    EXPECT_EQ(std::count(keys.begin(), keys.end(), key), 0) << key;
    keys.push_back(key);
  }
}

TEST(PowerShellCompletionTest, OffersTheValuesThatAnOptionTakesByName) {
  EXPECT_THAT(RunProgram({"completion", "powershell"}).out,
              AllOf(HasSubstr("\n        'outbox export --format' = @('json', 'protobuf', 'openmetrics')\n"),
                    HasSubstr("\n        'look --output' = @()\n"),
                    HasSubstr("-CommandName 'zt-telemetry-host', 'zt-telemetry-host.exe'"),
                    HasSubstr("{ $command = 'look' }")));
}

TEST(ManPageTest, TellsEveryCommandAndOptionOfTheHelp) {
  const std::string page = RunProgram({"man"}).out;
  EXPECT_THAT(page, StartsWith(".TH ZT\\-TELEMETRY\\-HOST 1 "));
  for (const std::string command : {"look", "collect", "doctor", "network", "seed"}) {
    const std::size_t begin = page.find("\n.SS " + command + "\n");
    ASSERT_NE(begin, std::string::npos) << command;
    const std::string section = page.substr(begin, page.find("\n.SS ", begin + 1) - begin);
    for (std::string option : OptionsInHelp(command)) {
      for (std::size_t at = 0; (at = option.find('-', at)) != std::string::npos; at += 2) option.insert(at, "\\");
      EXPECT_THAT(section, HasSubstr("\\fB" + option + "\\fR")) << command;
    }
  }
}

TEST(ManPageTest, HasTheExamplesAndTheExitCodes) {
  EXPECT_THAT(RunProgram({"man"}).out, AllOf(HasSubstr("\n.SH EXAMPLES\n.nf\n"), HasSubstr("\n.SH EXIT CODES\n"),
                                             HasSubstr("zt\\-telemetry\\-host look \\-\\-machine")));
}

TEST(ManPageTest, NoLineOfTextIsTakenForARequest) {
  const std::regex request("\\.(TH .*|SH .*|SS .*|PP|TP|nf|fi)");
  for (const std::string& line : Lines(RunProgram({"man"}).out)) {
    EXPECT_TRUE(!line.starts_with('.') || std::regex_match(line, request)) << line;
    EXPECT_FALSE(line.starts_with('\''));
  }
}

}  // namespace
}  // namespace zt::telemetry::host
