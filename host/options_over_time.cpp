#include "host/options_over_time.h"

#include <limits>
#include <string>

#include "host/common_options.h"
#include "host/help_texts.h"
#include "host/option_values.h"
#include "host/program_environment.h"
#include "host/utc_time.h"

namespace zt::telemetry::host {
namespace {

constexpr std::uint32_t kMostSeconds = 86'400;  // a day

void AddTime(CLI::App& app, const std::string& name, std::optional<std::chrono::sys_seconds>& time,
             const std::string& description) {
  app.add_option_function<std::string>(
         name, [&time](const std::string& text) { time = ParseUtcTime(text); }, description)
      ->check(TimeText("by the machine's clock"))
      ->type_name("TIME");
}

}  // namespace

void AddSimulate(CLI::App& program, SimulateCommand& command) {
  CLI::App& app = *program.add_subcommand(kSimulate, "Live records of a simulated machine over many hours");
  app.add_option("--hours", command.hours, "Hours that pass")
      ->transform(WholeNumber<std::uint32_t>(1, kMaxHours))
      ->type_name("N")
      ->required();
  app.add_option_function<std::string>(
         "--until", [&command](const std::string& text) { command.until = ParseUtcTime(text); },
         "Their end in UTC; by default the present")
      ->check(UtcTimeText())
      ->type_name("TIME");
  app.add_option("--random-seed", command.random_seed, "Another number gives other records of the same kind")
      ->transform(WholeNumber<std::uint64_t>(0, std::numeric_limits<std::uint64_t>::max()))
      ->type_name("N")
      ->default_str(std::to_string(kDefaultRandomSeed));
  AddPath(app, "--plugin", command.plugin, "FILE", "Collector plugin, by default the one beside this program");
  AddPath(app, "--outbox", command.outbox, "DIR", "Keep the records in the outbox of this folder");
  AddPath(app, "--output", command.output, "FILE",
          "Write the records here, one JSON object a line, instead of\nstandard output");
  AddSettings(app, command.settings, "warning");
  app.footer(help::kSimulateNotes);
}

void AddWatch(CLI::App& program, WatchCommand& command) {
  CLI::App& app = *program.add_subcommand(kWatch, "Shows the live record on a terminal, again and again");
  AddMachine(app, command.machine);
  app.add_option_function<std::uint32_t>(
         "--every", [&command](const std::uint32_t& seconds) { command.every = std::chrono::seconds(seconds); },
         "Seconds from one collection to the next")
      ->transform(WholeNumber<std::uint32_t>(1, kMostSeconds))
      ->type_name("SECONDS")
      ->default_str(std::to_string(command.every.count()));
  AddPath(app, "--plugin", command.plugin, "FILE", "Collector plugin, by default the one beside this program");
  AddSettings(app, command.settings, "warning");
  app.footer(help::kWatchNotes);
}

void AddReport(CLI::App& program, ReportCommand& command) {
  CLI::App& app = *program.add_subcommand(kReport, "Writes the records of a machine as a page for people");
  AddOutboxFolder(app, command.told);
  app.add_option_function<std::vector<std::string>>(
         "--records",
         [&command](const std::vector<std::string>& texts) {
           for (const std::string& text : texts) command.records.push_back(PathFromText(text));
         },
         "Lines that collect --format json or outbox export printed, or\nrecords of outbox export --format protobuf")
      ->check(Name())
      ->type_name("FILE...");
  app.add_option_function<std::string>(
         "--machine-name", [&command](const std::string& text) { command.machine_name = text; },
         "What people call the machine")
      ->check(Name())
      ->type_name("TEXT");
  AddTime(app, "--from", command.from, "Only what is not before this time");
  AddTime(app, "--to", command.to, "Only what is before this time");
  app.add_option_function<std::string>(
         "--serial", [&command](const std::string& text) { command.serial = text; },
         "Only the machine of this serial number")
      ->check(Name())
      ->type_name("SERIAL");
  app.add_option_function<std::string>(
         "--output", [&command](const std::string& text) { command.output = PathFromText(text); },
         "The page; a file that is there is replaced")
      ->check(Name())
      ->type_name("FILE")
      ->required();
  AddConfiguration(app, command.told);
  app.footer(help::kReportNotes);
}

}  // namespace zt::telemetry::host
