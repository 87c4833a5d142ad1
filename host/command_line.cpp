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
constexpr char kLook[] = "look";
constexpr char kCollect[] = "collect";
constexpr char kOutbox[] = "outbox";
constexpr char kDoctor[] = "doctor";
constexpr char kNetwork[] = "network";
constexpr char kSeed[] = "seed";
constexpr char kSimulate[] = "simulate";
constexpr char kReport[] = "report";
constexpr char kMachines[] = "machines";
constexpr std::array kCommands = {kLook, kCollect, kOutbox, kDoctor, kNetwork, kSeed, kSimulate, kReport, kMachines};
constexpr char kVersion[] = "zt-telemetry-host " ZT_VERSION;
constexpr char kDescription[] =
    "Runs the performance-samples collector as a telemetry host does, and shows what it hands over.\n"
    "Without a command: look, which takes nothing.";
constexpr char kExamples[] = R"(Examples:
  zt-telemetry-host look --machine convertible-laptop
      what a collection on a simulated laptop would hand over, as tables
  zt-telemetry-host look --machine workstation --format json --output records.jsonl
      the same for programs: one JSON object a line
  zt-telemetry-host seed --database-dir samples --hours 24 --until 2026-03-07T14:00:00Z
  zt-telemetry-host collect --machine convertible-laptop --database-dir samples --outbox outbox
  zt-telemetry-host outbox list --outbox outbox
      a day of stored samples, and its hourly records, which are kept
  zt-telemetry-host report --outbox outbox --output report.html
      what is kept, as a page with plots
  zt-telemetry-host doctor --machine workstation
      which sources of figures a machine has, and which of them fail
  zt-telemetry-host network --machine convertible-laptop
      the interfaces of a machine, its Wi-Fi and its connections
  zt-telemetry-host look --machine failing --event 51 --event 50 --log-level info
      two events in one process, with the collector's log

Exit codes: 0 done; 1 a collection reported an error, a hand-over could not be written, or a source
that was asked failed; 2 wrong usage, also a plugin, machine profile, folder or file that cannot be
used.)";
constexpr char kLookNotes[] =
    "The same cycle as collect, on a copy of the stored samples: the database stays as it is. Hand-overs go to\n"
    "standard output, the log and all else to standard error.";
constexpr char kCollectNotes[] =
    "For a schedule. Hand-overs go to standard output, or into the outbox; the log and all else to standard error.\n"
    "Once they have arrived, and are on the disk where they go to a file or an outbox, the stored samples that they\n"
    "hold are deleted from the database, and no others.";
constexpr char kOutboxNotes[] =
    "What collect --outbox has kept: one row for each hand-over. An hour that was sent again is \"replaced\" by the "
    "later\n"
    "record, or marked \"again\" where the earlier one was delivered; without --all only the others are told.";
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

constexpr char kSimulateNotes[] =
    "The collector samples the convertible laptop once an hour, as its battery ages, its drive fills, its user works "
    "by\n"
    "day and is away at night and on Sundays, when it is off. The same numbers give the same records. With the same\n"
    "--until, seed makes the stored samples of the same time.";
constexpr char kReportNotes[] =
    "One page for each machine, whole in itself: it asks nothing of anywhere. Of several machines each has its serial\n"
    "number in the name of its file. What cannot be read is told, here and in the page, and the rest is shown; the "
    "exit\n"
    "code is then 1. Times are those of the machine's wall clock.";

constexpr std::int32_t kDefaultEvent = 50;
constexpr std::uint32_t kMaxHours = 87'600;  // ten years
constexpr std::uint32_t kMaxInterfaces = 10'000;
constexpr std::uint32_t kDefaultInterfaces = 3;
constexpr std::uint64_t kDefaultRandomSeed = 1;
constexpr std::int64_t kMaxDays = 36'500;  // a hundred years
constexpr char kUploadMessage[] = "PcLogPerformanceSamplesAsCDM";

const Choices<plog::Severity> kLogLevels = {{"none", plog::none},       {"fatal", plog::fatal}, {"error", plog::error},
                                            {"warning", plog::warning}, {"info", plog::info},   {"debug", plog::debug},
                                            {"verbose", plog::verbose}};
const Choices<OutputFormat> kFormats = {{"text", OutputFormat::kText}, {"json", OutputFormat::kJson}};

const Choices<OutboxCommand::Form> kForms = {{"json", OutboxCommand::Form::kJson},
                                             {"protobuf", OutboxCommand::Form::kProtobuf}};

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

// What `look` and `collect` have in common.
void AddCycle(CLI::App& app, CollectCommand& command) {
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
}

void AddLook(CLI::App& program, CollectCommand& command) {
  CLI::App& app = *program.add_subcommand(kLook, "Runs the collector and shows what it hands over; takes nothing");
  AddCycle(app, command);
  app.footer(kLookNotes);
}

void AddOutboxFolder(CLI::App& app, std::filesystem::path& folder) {
  app.add_option_function<std::string>(
         "--outbox", [&folder](const std::string& text) { folder = PathFromText(text); }, "Folder of the outbox")
      ->check(Name())
      ->type_name("DIR")
      ->required();
}

void AddCollect(CLI::App& program, CollectCommand& command) {
  CLI::App& app = *program.add_subcommand(kCollect, "Runs the collector and takes the samples that it has sent");
  AddCycle(app, command);
  AddPath(
      app, "--outbox", command.outbox, "DIR",
      "Keep the hand-overs in the outbox of this folder, which is made\nwhere it is missing, instead of showing them");
  command.takes_samples = true;
  app.footer(kCollectNotes);
}

CLI::App& AddOutboxAction(CLI::App& outbox, const std::string& name, const std::string& description,
                          OutboxCommand& command, OutboxCommand::Action action) {
  CLI::App& app = *outbox.add_subcommand(name, description);
  app.footer("");
  AddOutboxFolder(app, command.folder);
  app.callback([&command, action] { command.action = action; });
  return app;
}

void AddAll(CLI::App& app, OutboxCommand& command) {
  app.add_flag("--all", command.all, "Those too that were replaced, and those that were sent again");
}

void AddOutput(CLI::App& app, std::optional<std::filesystem::path>& output) {
  AddPath(app, "--output", output, "FILE", "Write it here instead of standard output");
}

void AddOutbox(CLI::App& program, OutboxCommand& command) {
  using Action = OutboxCommand::Action;
  constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
  CLI::App& outbox = *program.add_subcommand(kOutbox, "Shows, exports or thins out the records that are kept");
  outbox.require_subcommand(1);
  outbox.footer(kOutboxNotes);

  CLI::App& list = AddOutboxAction(outbox, "list", "One line for each hand-over, oldest first", command, Action::kList);
  AddAll(list, command);
  list.add_option("--after", command.after, "Only those behind the one of this number")
      ->transform(WholeNumber<std::int64_t>(0, kMost))
      ->type_name("ID");
  list.add_option("--count", command.count, "At most so many")
      ->transform(WholeNumber<std::int64_t>(1, kMost))
      ->type_name("N");

  CLI::App& show = AddOutboxAction(outbox, "show", "One hand-over as tables: all that leaves the machine with it",
                                   command, Action::kShow);
  show.add_option("id", command.id, "Its number in the list")
      ->transform(WholeNumber<std::int64_t>(1, kMost))
      ->type_name("ID")
      ->required();

  CLI::App& to_file = AddOutboxAction(outbox, "export", "The hand-overs for programs", command, Action::kExport);
  AddAll(to_file, command);
  to_file
      .add_option_function<std::string>(
          "--format", [&command](const std::string& text) { command.form = *Find(kForms, text); },
          "json: one line for each, as collect prints them; protobuf: records of\none message, each behind its length")
      ->check(OneOf(kForms))
      ->type_name("json|protobuf")
      ->default_str("json");
  to_file
      .add_option("--message", command.message, "For protobuf: the message, by its full name or the last word of it")
      ->type_name("NAME")
      ->default_str(kUploadMessage);
  AddOutput(to_file, command.output);

  CLI::App& prune = AddOutboxAction(outbox, "prune", "Deletes what is beyond the limits; what was delivered goes first",
                                    command, Action::kPrune);
  prune.add_option("--max-bytes", command.max_bytes, "Size of the records to keep")
      ->transform(WholeNumber<std::int64_t>(0, kMost))
      ->type_name("N")
      ->default_str(std::to_string(command.max_bytes));
  prune.add_option("--max-days", command.max_days, "Age up to which delivered ones are kept")
      ->transform(WholeNumber<std::int64_t>(0, kMaxDays))
      ->type_name("N")
      ->default_str(std::to_string(command.max_days));

  AddOutboxAction(outbox, "status", "How much is kept, and of what standing", command, Action::kStatus);
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
  app.footer(kSimulateNotes);
}

void AddTime(CLI::App& app, const std::string& name, std::optional<std::chrono::sys_seconds>& time,
             const std::string& description) {
  app.add_option_function<std::string>(
         name, [&time](const std::string& text) { time = ParseUtcTime(text); }, description)
      ->check(TimeText("by the machine's clock"))
      ->type_name("TIME");
}

void AddReport(CLI::App& program, ReportCommand& command) {
  CLI::App& app = *program.add_subcommand(kReport, "Writes the records of a machine as a page for people");
  CLI::Option_group& input = *app.add_option_group("Records");
  AddPath(input, "--outbox", command.outbox, "DIR", "What collect --outbox has kept");
  input
      .add_option_function<std::vector<std::string>>(
          "--records",
          [&command](const std::vector<std::string>& texts) {
            for (const std::string& text : texts) command.records.push_back(PathFromText(text));
          },
          "Lines that collect --format json or outbox export printed, or\nrecords of outbox export --format protobuf")
      ->check(Name())
      ->type_name("FILE...");
  input.require_option(1, 0);
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
  app.footer(kReportNotes);
}

// Without a command: look. A first word that is no command is told here, since the library would miss a command.
void CompleteCommand(std::vector<std::string>& arguments) {
  constexpr std::array kOfTheProgram = {"-h", "--help", "--version"};
  const std::string first = arguments.empty() ? "-" : arguments.front();
  if (std::find(kOfTheProgram.begin(), kOfTheProgram.end(), first) != kOfTheProgram.end()) return;
  if (first.starts_with('-')) {
    arguments.insert(arguments.begin(), kLook);
  } else if (std::find(kCommands.begin(), kCommands.end(), first) == kCommands.end()) {
    throw WrongUsage("there is no command \"" + first +
                     "\"; expected look, collect, outbox, doctor, network, seed, simulate, report or machines\nSee " +
                     std::string(kProgram) + " --help");
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
  CollectCommand look;
  CollectCommand collect;
  OutboxCommand outbox;
  outbox.message = kUploadMessage;
  DoctorCommand doctor;
  NetworkCommand network;
  SeedCommand seed;
  seed.interfaces = kDefaultInterfaces;
  seed.random_seed = kDefaultRandomSeed;
  SimulateCommand simulate;
  simulate.random_seed = kDefaultRandomSeed;
  ReportCommand report;

  CLI::App app(kDescription, kProgram);
  app.allow_windows_style_options(false);  // an argument that starts with a slash is a path
  app.set_version_flag("--version", kVersion, "Print the version and exit");
  app.set_help_flag("-h,--help", "Print this help and exit");
  app.get_formatter()->column_width(34);
  app.footer(kExamples);
  app.require_subcommand(1);
  AddLook(app, look);
  AddCollect(app, collect);
  AddOutbox(app, outbox);
  AddDoctor(app, doctor);
  AddNetwork(app, network);
  AddSeed(app, seed);
  AddSimulate(app, simulate);
  AddReport(app, report);
  app.add_subcommand(kMachines, "Lists the simulated machines")->footer("");

  CompleteCommand(arguments);
  std::reverse(arguments.begin(), arguments.end());  // as the library takes them
  try {
    app.parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    return ShowTextCommand{TextOrWrongUsage(app, error)};
  }
  for (CollectCommand* const cycle : {&look, &collect}) {
    if (cycle->events.empty()) cycle->events = {kDefaultEvent};
  }
  if (app.got_subcommand(kCollect)) return collect;
  if (app.got_subcommand(kOutbox)) return outbox;
  if (app.got_subcommand(kDoctor)) return doctor;
  if (app.got_subcommand(kNetwork)) return network;
  if (app.got_subcommand(kSeed)) return seed;
  if (app.got_subcommand(kSimulate)) return simulate;
  if (app.got_subcommand(kReport)) return report;
  if (app.got_subcommand(kMachines)) return MachinesCommand{};
  return look;
}

}  // namespace zt::telemetry::host
