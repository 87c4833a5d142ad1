#include "host/command_line.h"

#include <gmock/gmock.h>

#include <regex>

#include "host/failure.h"
#include "host/files.h"

namespace zt::telemetry::host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

template <typename T>
T Read(const std::vector<std::string>& arguments) {
  return std::get<T>(ReadCommandLine(arguments));
}

// The text of the wrong usage that the arguments must be.
std::string Complaint(const std::vector<std::string>& arguments) {
  try {
    ReadCommandLine(arguments);
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.ExitCode(), kExitWrongUsage);
    return failure.what();
  }
  ADD_FAILURE() << "accepted";
  return {};
}

TEST(CommandLineTest, CollectRunsEvent50AsTextWithWarningsUnlessToldOtherwise) {
  const auto command = Read<CollectCommand>({"collect"});
  EXPECT_THAT(command.events, ElementsAre(50));
  EXPECT_EQ(command.format, OutputFormat::kText);
  EXPECT_EQ(command.log_level, plog::warning);
  EXPECT_FALSE(command.database_dir || command.machine || command.plugin || command.output || command.queries);
}

TEST(CommandLineTest, CollectTakesAllItsOptions) {
  const auto command = Read<CollectCommand>({"collect", "--event", "51", "--event", "20", "--database-dir", "samples",
                                             "--machine", "workstation", "--plugin", "p.so", "--log-level", "info",
                                             "--format", "json", "--output", "out.jsonl", "--queries", "q.txt"});
  EXPECT_THAT(command.events, ElementsAre(51, 20));
  EXPECT_EQ(command.database_dir, "samples");
  EXPECT_EQ(command.machine, "workstation");
  EXPECT_EQ(command.plugin, "p.so");
  EXPECT_EQ(command.log_level, plog::info);
  EXPECT_EQ(command.format, OutputFormat::kJson);
  EXPECT_EQ(command.output, "out.jsonl");
  EXPECT_EQ(command.queries, "q.txt");
}

TEST(CommandLineTest, ACollectionLogsOnStandardErrorUnlessToldOtherwise) {
  EXPECT_EQ(Read<CollectCommand>({"collect"}).settings.log_target, LogTarget::kStandardError);
  EXPECT_EQ(Read<CollectCommand>({"collect", "--log-to", "event-log"}).settings.log_target, LogTarget::kEventLog);
  EXPECT_THAT(Complaint({"collect", "--log-to", "syslog"}), HasSubstr("expected one of stderr, event-log"));
}

TEST(CommandLineTest, TheNewestRecordsAreExportedAsMetrics) {
  const auto command = Read<OutboxCommand>({"outbox", "export", "--outbox", "o", "--format", "openmetrics", "--sources",
                                            "--machine", "bare", "--database-dir", "samples"});
  EXPECT_EQ(command.form, OutboxCommand::Form::kOpenMetrics);
  EXPECT_TRUE(command.asks_sources);
  EXPECT_EQ(command.doctor.machine, "bare");
  EXPECT_EQ(command.doctor.database_dir, "samples");
}

TEST(CommandLineTest, TheDoctorTellsMetricsAndIntoAFile) {
  const auto command = Read<DoctorCommand>({"doctor", "--format", "openmetrics", "--output", "zt.prom"});
  EXPECT_EQ(command.format, OutputFormat::kOpenMetrics);
  EXPECT_EQ(command.output, "zt.prom");
}

TEST(CommandLineTest, OnlyTheDoctorAndTheExportMakeMetrics) {
  EXPECT_THAT(Complaint({"look", "--format", "openmetrics"}), HasSubstr("expected one of text, json"));
  EXPECT_THAT(Complaint({"network", "--format", "openmetrics"}), HasSubstr("expected one of text, json"));
}

TEST(CommandLineTest, TheEventSourceIsAddedOrRemoved) {
  EXPECT_TRUE(Read<EventSourceCommand>({"event-source", "add"}).adds);
  EXPECT_FALSE(Read<EventSourceCommand>({"event-source", "remove"}).adds);
  EXPECT_THAT(Complaint({"event-source"}), HasSubstr("action is required"));
}

TEST(CommandLineTest, DoctorTakesAllItsOptions) {
  const auto command = Read<DoctorCommand>({"doctor", "--machine", "bare", "--database-dir", "samples", "--format",
                                            "json", "--log-level", "info", "--queries", "q.txt"});
  EXPECT_EQ(command.machine, "bare");
  EXPECT_EQ(command.database_dir, "samples");
  EXPECT_EQ(command.format, OutputFormat::kJson);
  EXPECT_EQ(command.log_level, plog::info);
  EXPECT_EQ(command.queries, "q.txt");
}

TEST(CommandLineTest, DoctorShowsNoLogUnlessToldOtherwise) {
  EXPECT_EQ(Read<DoctorCommand>({"doctor"}).log_level, plog::none);
}

TEST(CommandLineTest, NetworkTakesAllItsOptions) {
  const auto command = Read<NetworkCommand>(
      {"network", "--machine", "bare", "--format", "json", "--log-level", "info", "--queries", "q.txt"});
  EXPECT_EQ(command.machine, "bare");
  EXPECT_EQ(command.format, OutputFormat::kJson);
  EXPECT_EQ(command.log_level, plog::info);
  EXPECT_EQ(command.queries, "q.txt");
}

TEST(CommandLineTest, NetworkShowsWarningsUnlessToldOtherwise) {
  EXPECT_EQ(Read<NetworkCommand>({"network"}).log_level, plog::warning);
}

TEST(CommandLineTest, WatchTakesAllItsOptions) {
  const auto command = Read<WatchCommand>(
      {"watch", "--machine", "bare", "--every", "2", "--plugin", "p.so", "--log-level", "info", "--log-file", "l.txt"});
  EXPECT_EQ(command.machine, "bare");
  EXPECT_EQ(command.every, std::chrono::seconds(2));
  EXPECT_EQ(command.plugin, "p.so");
  EXPECT_EQ(command.log_level, plog::info);
  EXPECT_EQ(command.settings.told.log_file, "l.txt");
}

TEST(CommandLineTest, WatchCollectsEveryFiveSecondsUnlessToldOtherwise) {
  EXPECT_EQ(Read<WatchCommand>({"watch"}).every, std::chrono::seconds(5));
  EXPECT_THAT(Complaint({"watch", "--every", "0"}),
              HasSubstr("expected a whole number from 1 to 86400, but got \"0\""));
}

TEST(CommandLineTest, DoctorTakesNoOptionOfACollection) {
  EXPECT_THAT(Complaint({"doctor", "--event", "50"}), HasSubstr("See zt-telemetry-host doctor --help"));
}

TEST(CommandLineTest, WithoutACommandItMeansCollect) {
  EXPECT_THAT(Read<CollectCommand>({}).events, ElementsAre(50));
  EXPECT_THAT(Read<CollectCommand>({"--event", "51"}).events, ElementsAre(51));
}

TEST(CommandLineTest, AnEventCanBeNegativeAndLeadingZerosAreDecimal) {
  EXPECT_THAT(Read<CollectCommand>({"--event", "-7", "--event", "050"}).events, ElementsAre(-7, 50));
}

TEST(CommandLineTest, AnEventThatIsNoWholeNumberOf32BitsIsRefused) {
  for (const char* event :
       {"abc", "", "5.5", "50x", " 50", "0x32", "2147483648", "-2147483649", "99999999999999999999"}) {
    EXPECT_THAT(Complaint({"collect", "--event", event}),
                AllOf(StartsWith("--event: expected a whole number from -2147483648 to 2147483647"),
                      HasSubstr("\"" + std::string(event) + "\"")));
  }
}

TEST(CommandLineTest, APathCanStartWithASlashAndHoldAnyCharacter) {
  const auto command = Read<CollectCommand>({"--output", "Proben für 日本.jsonl", "--queries=/q"});
  EXPECT_EQ(ToText(*command.output), "Proben für 日本.jsonl");
  EXPECT_THAT(ToText(*command.queries), testing::EndsWith("/q"));
}

TEST(CommandLineTest, SeedWritesThreeInterfacesUntilNowFromAFixedRandomSeedUnlessToldOtherwise) {
  const auto command = Read<SeedCommand>({"seed", "--database-dir", "d", "--hours", "24"});
  EXPECT_EQ(command.database_dir, "d");
  EXPECT_EQ(command.hours, 24U);
  EXPECT_EQ(command.interfaces, 3U);
  EXPECT_EQ(command.until, std::nullopt);
  EXPECT_EQ(command.random_seed, 1U);
}

TEST(CommandLineTest, SeedTakesAllItsOptions) {
  const auto command = Read<SeedCommand>({"seed", "--database-dir", "d", "--hours", "2", "--interfaces", "40",
                                          "--until", "1970-01-02", "--random-seed", "18446744073709551615"});
  EXPECT_EQ(command.interfaces, 40U);
  EXPECT_EQ(command.until, std::chrono::sys_seconds(std::chrono::seconds(86'400)));
  EXPECT_EQ(command.random_seed, 18446744073709551615U);
}

TEST(CommandLineTest, SeedNeedsAFolderAndHours) {
  EXPECT_THAT(Complaint({"seed", "--hours", "1"}),
              StartsWith("--database-dir is required\nSee zt-telemetry-host seed --help"));
  EXPECT_THAT(Complaint({"seed", "--database-dir", "d"}), StartsWith("--hours is required"));
}

TEST(CommandLineTest, HoursThatAreNegativeZeroTooManyOrNoNumberAreRefused) {
  for (const char* hours : {"-3", "0", "87601", "1.5", "many"}) {
    EXPECT_THAT(Complaint({"seed", "--database-dir", "d", "--hours", hours}),
                StartsWith("--hours: expected a whole number from 1 to 87600, but got \"" + std::string(hours) + "\""));
  }
}

TEST(CommandLineTest, ATimeThatIsNoneIsRefusedWithAnExample) {
  EXPECT_THAT(Complaint({"seed", "--database-dir", "d", "--hours", "1", "--until", "2026-02-30"}),
              StartsWith("--until: expected a time in UTC such as 2026-03-07T14:00:00Z, but got \"2026-02-30\""));
}

TEST(CommandLineTest, AChoiceThatDoesNotExistIsRefusedWithTheChoices) {
  EXPECT_THAT(Complaint({"--format", "xml"}), StartsWith("--format: expected one of text, json, but got \"xml\""));
  EXPECT_THAT(Complaint({"--log-level", "loud"}),
              StartsWith("--log-level: expected one of none, fatal, error, warning, info, debug, verbose, but got"));
}

TEST(CommandLineTest, AMissingValueIsNamed) {
  EXPECT_THAT(Complaint({"collect", "--event"}), StartsWith("--event: the value is missing"));
  EXPECT_THAT(Complaint({"collect", "--output", "--queries", "q"}),
              StartsWith("--output: expected a name, but got the option --queries"));
  EXPECT_THAT(Complaint({"collect", "--machine", ""}), StartsWith("--machine: expected a name, but got an empty text"));
}

TEST(CommandLineTest, AnOptionGivenTwiceIsNamedUnlessItIsTheEvent) {
  EXPECT_THAT(Complaint({"--format", "json", "--format", "text"}), StartsWith("--format: given more than once"));
}

TEST(CommandLineTest, AnUnknownCommandOrArgumentIsNamed) {
  EXPECT_THAT(Complaint({"colect"}),
              StartsWith("there is no command \"colect\"; expected look, collect, outbox, doctor, network, seed, "
                         "simulate, watch, report, config, machines, event-source, completion or man"));
  EXPECT_THAT(Complaint({"collect", "--evnt", "50"}), HasSubstr("--evnt"));
  EXPECT_THAT(Complaint({"collect", "--event", "50", "51"}), HasSubstr("51"));
  EXPECT_THAT(Complaint({"machines", "all"}), HasSubstr("all"));
}

TEST(CommandLineTest, HelpNamesEveryCommandAndShowsExamples) {
  const std::string text = Read<ShowTextCommand>({"--help"}).text;
  for (const char* part :
       {"look", "collect", "outbox", "seed", "machines", "Examples:", "--machine convertible-laptop", "Exit codes:"}) {
    EXPECT_THAT(text, HasSubstr(part));
  }
}

TEST(CommandLineTest, TheHelpOfACommandNamesEachOfItsOptions) {
  const std::string collect = Read<ShowTextCommand>({"collect", "--help"}).text;
  for (const char* option :
       {"--event", "--database-dir", "--machine", "--plugin", "--log-level", "--format", "--output", "--queries"}) {
    EXPECT_THAT(collect, HasSubstr(option));
  }
  const std::string seed = Read<ShowTextCommand>({"seed", "--help"}).text;
  for (const char* option : {"--database-dir", "--hours", "--interfaces", "--until", "--random-seed"}) {
    EXPECT_THAT(seed, HasSubstr(option));
  }
}

TEST(CommandLineTest, TheVersionTellsWhatWasBuiltAndFromWhat) {
  const std::regex lines(
      "zt-telemetry-host [0-9]+(\\.[0-9]+)*\n"
      "commit    (none was told to this build|[0-9a-f]{7,40})\n"
      "contract  [0-9]+(\\.[0-9]+)*\n"
      "compiler  [A-Za-z]+ [0-9.]+ for (Linux|Windows) [A-Za-z0-9_]+\n");
  const std::string text = Read<ShowTextCommand>({"--version"}).text;
  EXPECT_TRUE(std::regex_match(text, lines)) << text;
}

}  // namespace
}  // namespace zt::telemetry::host
