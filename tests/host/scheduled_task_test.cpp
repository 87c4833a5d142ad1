#include "scheduled_task.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "host/command_line.h"
#include "host/program_environment.h"

namespace zt::telemetry::host {
namespace {

// The task that administrators import, as it lies in docs/.
std::string TaskFile() {
  return {reinterpret_cast<const char*>(zt::tests::kScheduledTask), sizeof(zt::tests::kScheduledTask)};
}

// Its characters, which are of ASCII all.
std::string TaskText() {
  const std::string file = TaskFile();
  std::string text;
  for (std::size_t i = 2; i + 1 < file.size(); i += 2) text += file[i + 1] == 0 ? file[i] : '?';
  return text;
}

std::string Element(const std::string& name) {
  const std::string text = TaskText();
  const std::size_t begin = text.find("<" + name + ">") + name.size() + 2;
  return text.substr(begin, text.find("</" + name + ">") - begin);
}

// As Windows parts a command line, where there is nothing more than blanks and quotes.
std::vector<std::string> Parted(const std::string& line) {
  std::vector<std::string> arguments;
  bool in_quotes = false;
  bool in_argument = false;
  for (const char character : line) {
    if (character == '"') in_quotes = !in_quotes;
    if (character == ' ' && !in_quotes) {
      in_argument = false;
      continue;
    }
    if (!in_argument) arguments.emplace_back();
    in_argument = true;
    if (character != '"') arguments.back() += character;
  }
  return arguments;
}

// The Task Scheduler takes files in UTF-16 with their mark, and declared so.
TEST(ScheduledTaskTest, IsInUtf16AsItSays) {
  EXPECT_EQ(TaskFile().substr(0, 2), "\xFF\xFE");
  EXPECT_EQ(TaskFile().size() % 2, 0U);
  EXPECT_THAT(TaskText(), testing::StartsWith("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\r\n<Task "));
  EXPECT_THAT(TaskText(), testing::Not(testing::HasSubstr("?<")));
}

TEST(ScheduledTaskTest, ItsCommandLineCollectsIntoAnOutboxAndLogsWhereAdministratorsLook) {
  const auto command = std::get<CollectCommand>(ReadCommandLine(Parted(Element("Arguments"))));
  EXPECT_TRUE(command.takes_samples);
  EXPECT_EQ(command.outbox, PathFromText(R"(%ProgramData%\zt\telemetry\outbox)"));
  EXPECT_EQ(command.settings.log_target, LogTarget::kEventLog);
  EXPECT_EQ(command.log_level, plog::warning);
  EXPECT_FALSE(command.database_dir.has_value()) << "the host's own";
}

TEST(ScheduledTaskTest, RunsThisProgram) {
  EXPECT_THAT(Element("Command"), testing::EndsWith(R"(\zt-telemetry-host.exe)"));
}

}  // namespace
}  // namespace zt::telemetry::host
