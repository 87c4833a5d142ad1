#include "host/command_line.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <sstream>
#include <string_view>
#include <utility>

#include <CLI/CLI.hpp>

#include "host/failure.h"
#include "host/option_values.h"
#include "host/program_environment.h"
#include "host/utc_time.h"

namespace zt::telemetry::host {
namespace {

constexpr char kProgram[] = "zt-telemetry-host";
constexpr char kCollect[] = "collect";
constexpr char kDoctor[] = "doctor";
constexpr char kNetwork[] = "network";
constexpr char kSeed[] = "seed";
constexpr char kMachines[] = "machines";
constexpr std::array kCommands = {kCollect, kDoctor, kNetwork, kSeed, kMachines};
constexpr char kVersion[] = "zt-telemetry-host " ZT_VERSION;
constexpr char kDescription[] =
    "Runs the performance-samples collector as a telemetry host does, and shows what it hands over.\n"
    "Without a command: collect.";
constexpr char kExamples[] = R"(Examples:
  zt-telemetry-host collect --machine convertible-laptop
      one collection on a simulated laptop, shown as tables
  zt-telemetry-host collect --machine workstation --format json --output records.jsonl
      the same for programs: one JSON object a line
  zt-telemetry-host seed --database-dir samples --hours 24 --until 2026-03-07T14:00:00Z
  zt-telemetry-host collect --machine convertible-laptop --database-dir samples
      a day of stored samples, and its hourly records
  zt-telemetry-host doctor --machine workstation
      which sources of figures a machine has, and which of them fail
  zt-telemetry-host network --machine convertible-laptop
      the interfaces of a machine, its Wi-Fi and its connections
  zt-telemetry-host collect --machine failing --event 51 --event 50 --log-level info
      two events in one process, with the collector's log

Exit codes: 0 done; 1 a collection reported an error, a hand-over could not be written, or a source
that was asked failed; 2 wrong usage, also a plugin, machine profile, folder or file that cannot be
used.)";
constexpr char kCollectNotes[] =
    "Hand-overs go to standard output, the log and all else to standard error.\n"
    "A stored sample that was sent is deleted from the database, as in the field.";
constexpr char kDoctorNotes[] =
    "Asks each source once, as a collection does, and hands nothing over. For each: present, absent (the\n"
    "machine does not have it) or failed, the time it took, and the figures that a collection would get.\n"
    "The exit code is 0 unless a source failed; what a source logs as a warning or worse is a failure.";
constexpr char kNetworkNotes[] =
    "Asks for the inventory of interfaces, then for their connections, for Wi-Fi and for TCP, and hands nothing\n"
    "over. A pass or a query that fails is told on standard error, and the exit code is 1; the rest is shown.";
constexpr char kSeedNotes[] =
    "Makes \"ssm.db\" in the folder, or adds to it: one thermal sample a minute, and one network sample\n"
    "a minute for each interface (wired, Wi-Fi, VPN, and so on in turn). The samples end just before\n"
    "--until; they fill exactly N hour windows when it is on the hour, else N + 1, the outer two partly.\n"
    "The same numbers give the same samples.";

constexpr std::int32_t kDefaultEvent = 50;
constexpr std::uint32_t kMaxHours = 87'600;  // ten years
constexpr std::uint32_t kMaxInterfaces = 10'000;
constexpr std::uint32_t kDefaultInterfaces = 3;
constexpr std::uint64_t kDefaultRandomSeed = 1;

const Choices<plog::Severity> kLogLevels = {{"none", plog::none},       {"fatal", plog::fatal}, {"error", plog::error},
                                            {"warning", plog::warning}, {"info", plog::info},   {"debug", plog::debug},
                                            {"verbose", plog::verbose}};
const Choices<OutputFormat> kFormats = {{"text", OutputFormat::kText}, {"json", OutputFormat::kJson}};

void AddPath(CLI::App& app, const std::string& name, std::optional<std::filesystem::path>& path,
             const std::string& type, const std::string& description) {
  app.add_option_function<std::string>(
         name, [&path](const std::string& text) { path = PathFromText(text); }, description)
      ->check(Name())
      ->type_name(type);
}

void AddMachine(CLI::App& app, std::optional<std::string>& machine) {
  app.add_option_function<std::string>(
         "--machine", [&machine](const std::string& text) { machine = text; },
         "Simulated machine to sample: a name that `machines` lists, or a profile file")
      ->check(Name())
      ->type_name("NAME|FILE");
}

void AddFormat(CLI::App& app, OutputFormat& format) {
  app.add_option_function<std::string>(
         "--format", [&format](const std::string& text) { format = *Find(kFormats, text); },
         "text: tables for people; json: one object a line for programs")
      ->check(OneOf(kFormats))
      ->type_name("json|text")
      ->default_str("text");
}

void AddLogLevel(CLI::App& app, plog::Severity& level, const std::string& unless_told) {
  app.add_option_function<std::string>(
         "--log-level", [&level](const std::string& text) { level = *Find(kLogLevels, text); },
         "Least severe log lines to show: none, fatal, error, warning, info,\ndebug, verbose")
      ->check(OneOf(kLogLevels))
      ->type_name("LEVEL")
      ->default_str(unless_told);
}

void AddDatabaseFolder(CLI::App& app, std::optional<std::filesystem::path>& folder) {
  AddPath(app, "--database-dir", folder, "DIR", "Folder of \"ssm.db\", the stored samples");
}

void AddQueries(CLI::App& app, std::optional<std::filesystem::path>& queries) {
  AddPath(app, "--queries", queries, "FILE", "Write the text of every WQL query here, one a line");
}

void AddCollect(CLI::App& program, CollectCommand& command) {
  CLI::App& app = *program.add_subcommand(kCollect, "Runs the collector and shows what it hands over");
  app.add_option("--event", command.events,
                 "Event type: 20 or 50 a full collection, 51 the example upload; may be given\n"
                 "several times, each runs in turn")
      ->transform(WholeNumber(std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()))
      ->allow_extra_args(false)
      ->type_name("N")
      ->default_str(std::to_string(kDefaultEvent));
  AddDatabaseFolder(app, command.database_dir);
  AddMachine(app, command.machine);
  AddPath(app, "--plugin", command.plugin, "FILE", "Collector plugin, by default the one beside this program");
  AddLogLevel(app, command.log_level, "warning");
  AddFormat(app, command.format);
  AddPath(app, "--output", command.output, "FILE", "Write the hand-overs here instead of standard output");
  AddQueries(app, command.queries);
  app.footer(kCollectNotes);
}

void AddDoctor(CLI::App& program, DoctorCommand& command) {
  CLI::App& app = *program.add_subcommand(kDoctor, "Tells which sources of figures are there, and which fail");
  AddMachine(app, command.machine);
  AddDatabaseFolder(app, command.database_dir);
  AddLogLevel(app, command.log_level, "none");
  AddFormat(app, command.format);
  AddQueries(app, command.queries);
  app.footer(kDoctorNotes);
}

void AddNetwork(CLI::App& program, NetworkCommand& command) {
  CLI::App& app = *program.add_subcommand(kNetwork, "Shows the network of the machine as it is now");
  AddMachine(app, command.machine);
  AddLogLevel(app, command.log_level, "warning");
  AddFormat(app, command.format);
  AddQueries(app, command.queries);
  app.footer(kNetworkNotes);
}

void AddSeed(CLI::App& program, SeedCommand& command) {
  CLI::App& app = *program.add_subcommand(kSeed, "Writes made-up stored samples for collect to summarise");
  app.add_option_function<std::string>(
         "--database-dir", [&command](const std::string& text) { command.database_dir = PathFromText(text); },
         "Folder of \"ssm.db\"; made where it is missing")
      ->check(Name())
      ->type_name("DIR")
      ->required();
  app.add_option("--hours", command.hours, "Hours of samples")
      ->transform(WholeNumber<std::uint32_t>(1, kMaxHours))
      ->type_name("N")
      ->required();
  app.add_option("--interfaces", command.interfaces, "Network interfaces")
      ->transform(WholeNumber<std::uint32_t>(0, kMaxInterfaces))
      ->type_name("N")
      ->default_str(std::to_string(kDefaultInterfaces));
  app.add_option_function<std::string>(
         "--until", [&command](const std::string& text) { command.until = ParseUtcTime(text); },
         "End of the samples in UTC, for example 2026-03-07T14:00:00Z or\n2026-03-07; by default the present")
      ->check(UtcTimeText())
      ->type_name("TIME");
  app.add_option("--random-seed", command.random_seed, "Another number gives other samples of the same kind")
      ->transform(WholeNumber<std::uint64_t>(0, std::numeric_limits<std::uint64_t>::max()))
      ->type_name("N")
      ->default_str(std::to_string(kDefaultRandomSeed));
  app.footer(kSeedNotes);
}

// Without a command: collect. A first word that is no command is told here, since the library would miss a command.
void CompleteCommand(std::vector<std::string>& arguments) {
  constexpr std::array kOfTheProgram = {"-h", "--help", "--version"};
  const std::string first = arguments.empty() ? "-" : arguments.front();
  if (std::find(kOfTheProgram.begin(), kOfTheProgram.end(), first) != kOfTheProgram.end()) return;
  if (first.starts_with('-')) {
    arguments.insert(arguments.begin(), kCollect);
  } else if (std::find(kCommands.begin(), kCommands.end(), first) == kCommands.end()) {
    throw WrongUsage("there is no command \"" + first +
                     "\"; expected collect, doctor, network, seed or machines\nSee " + std::string(kProgram) +
                     " --help");
  }
}

// The library counts values; a person has forgotten one or given one too many.
std::string ComplaintText(const CLI::ParseError& error) {
  const std::string text = error.what();
  if (error.get_exit_code() != static_cast<int>(CLI::ExitCodes::ArgumentMismatch)) return text;
  const bool too_many = text.find("received") != std::string::npos;
  return text.substr(0, text.find(':')) + (too_many ? ": given more than once" : ": the value is missing");
}

// The library's text for help and version; everything else is wrong usage.
std::string TextOrWrongUsage(const CLI::App& app, const CLI::ParseError& error) {
  std::ostringstream text;
  std::ostringstream errors;
  if (app.exit(error, text, errors) == static_cast<int>(CLI::ExitCodes::Success)) return text.str();
  const std::vector<const CLI::App*> chosen = app.get_subcommands([](const CLI::App* sub) { return sub->parsed(); });
  const std::string command = chosen.empty() ? "" : " " + chosen.back()->get_name();
  throw WrongUsage(ComplaintText(error) + "\nSee " + kProgram + command + " --help");
}

}  // namespace

Command ReadCommandLine(std::vector<std::string> arguments) {
  CollectCommand collect;
  DoctorCommand doctor;
  NetworkCommand network;
  SeedCommand seed;
  seed.interfaces = kDefaultInterfaces;
  seed.random_seed = kDefaultRandomSeed;

  CLI::App app(kDescription, kProgram);
  app.allow_windows_style_options(false);  // an argument that starts with a slash is a path
  app.set_version_flag("--version", kVersion, "Print the version and exit");
  app.set_help_flag("-h,--help", "Print this help and exit");
  app.get_formatter()->column_width(34);
  app.footer(kExamples);
  app.require_subcommand(1);
  AddCollect(app, collect);
  AddDoctor(app, doctor);
  AddNetwork(app, network);
  AddSeed(app, seed);
  app.add_subcommand(kMachines, "Lists the simulated machines")->footer("");

  CompleteCommand(arguments);
  std::reverse(arguments.begin(), arguments.end());  // as the library takes them
  try {
    app.parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    return ShowTextCommand{TextOrWrongUsage(app, error)};
  }
  if (collect.events.empty()) collect.events = {kDefaultEvent};
  if (app.got_subcommand(kDoctor)) return doctor;
  if (app.got_subcommand(kNetwork)) return network;
  if (app.got_subcommand(kSeed)) return seed;
  if (app.got_subcommand(kMachines)) return MachinesCommand{};
  return collect;
}

}  // namespace zt::telemetry::host
