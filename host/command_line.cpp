#include "host/command_line.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <sstream>
#include <string_view>
#include <utility>

#include <CLI/CLI.hpp>

#include "host/common_options.h"
#include "host/failure.h"
#include "host/help_texts.h"
#include "host/option_values.h"
#include "host/options_over_time.h"
#include "host/program_environment.h"
#include "host/shell/completion.h"
#include "host/shell/man_page.h"
#include "host/utc_time.h"
#include "host/version.h"

namespace zt::telemetry::host {
namespace {

constexpr char kProgram[] = "zt-telemetry-host";
constexpr char kLook[] = "look";
constexpr char kCollect[] = "collect";
constexpr char kOutbox[] = "outbox";
constexpr char kDoctor[] = "doctor";
constexpr char kNetwork[] = "network";
constexpr char kSeed[] = "seed";
constexpr char kConfig[] = "config";
constexpr char kMachines[] = "machines";
constexpr char kEventSource[] = "event-source";
constexpr char kCompletion[] = "completion";
constexpr char kMan[] = "man";

constexpr std::int32_t kDefaultEvent = 50;
constexpr std::uint32_t kMaxInterfaces = 10'000;
constexpr std::uint32_t kDefaultInterfaces = 3;
constexpr char kUploadMessage[] = "PcLogPerformanceSamplesAsCDM";

const Choices<OutputFormat> kDoctorFormats = {
    {"text", OutputFormat::kText}, {"json", OutputFormat::kJson}, {"openmetrics", OutputFormat::kOpenMetrics}};
const Choices<LogTarget> kLogTargets = {{"stderr", LogTarget::kStandardError}, {"event-log", LogTarget::kEventLog}};
const Choices<bool> kEventSourceActions = {{"add", true}, {"remove", false}};

enum class Shell { kBash, kPowerShell };
const Choices<Shell> kShells = {{"bash", Shell::kBash}, {"powershell", Shell::kPowerShell}};

const Choices<OutboxCommand::Form> kForms = {{"json", OutboxCommand::Form::kJson},
                                             {"protobuf", OutboxCommand::Form::kProtobuf},
                                             {"openmetrics", OutboxCommand::Form::kOpenMetrics}};

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
  AddSettings(app, command.settings, "warning");
  app.add_option_function<std::string>(
         "--log-to", [&command](const std::string& text) { command.settings.log_target = *Find(kLogTargets, text); },
         "event-log: Windows' own log, for what runs unseen")
      ->check(OneOf(kLogTargets))
      ->type_name("stderr|event-log")
      ->default_str("stderr");
  AddFormat(app, command.format).each([&command](const std::string&) { command.format_told = true; });
  AddPath(app, "--output", command.output, "FILE", "Write the hand-overs here instead of standard output");
  AddQueries(app, command.queries);
}

void AddLook(CLI::App& program, CollectCommand& command) {
  CLI::App& app = *program.add_subcommand(kLook, "Runs the collector and shows what it hands over; takes nothing");
  AddCycle(app, command);
  app.footer(help::kLookNotes);
}

void AddCollect(CLI::App& program, CollectCommand& command) {
  CLI::App& app = *program.add_subcommand(kCollect, "Runs the collector and takes the samples that it has sent");
  AddCycle(app, command);
  AddPath(
      app, "--outbox", command.outbox, "DIR",
      "Keep the hand-overs in the outbox of this folder, which is made\nwhere it is missing, instead of showing them");
  command.takes_samples = true;
  app.footer(help::kCollectNotes);
}

CLI::App& AddOutboxAction(CLI::App& outbox, const std::string& name, const std::string& description,
                          OutboxCommand& command, OutboxCommand::Action action) {
  CLI::App& app = *outbox.add_subcommand(name, description);
  app.footer("");
  AddOutboxFolder(app, command.settings.told);
  AddConfiguration(app, command.settings.told);
  app.callback([&command, action] { command.action = action; });
  return app;
}

void AddAll(CLI::App& app, OutboxCommand& command) {
  app.add_flag("--all", command.all, "Those too that were replaced, and those that were sent again");
}

void AddOutbox(CLI::App& program, OutboxCommand& command) {
  using Action = OutboxCommand::Action;
  constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
  CLI::App& outbox = *program.add_subcommand(kOutbox, "Shows, exports or thins out the records that are kept");
  outbox.require_subcommand(1);
  outbox.footer(help::kOutboxNotes);

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
          "json: one line for each, as collect prints them; protobuf: records of\none message, each behind its length; "
          "openmetrics: the newest record\nof each kind as metrics")
      ->check(OneOf(kForms))
      ->type_name(Names(kForms, "|"))
      ->default_str("json");
  to_file
      .add_option("--message", command.message, "For protobuf: the message, by its full name or the last word of it")
      ->type_name("NAME")
      ->default_str(kUploadMessage);
  AddOutput(to_file, command.output);
  CLI::Option* const sources = to_file.add_flag(
      "--sources", command.asks_sources,
      "For openmetrics: ask each source as well, as doctor does, and add\nwhether it answers, and how long "
      "that takes");
  AddMachine(to_file, command.doctor.machine)->needs(sources);
  AddDatabaseFolder(to_file, command.doctor.database_dir)->needs(sources);

  CLI::App& prune = AddOutboxAction(outbox, "prune", "Deletes what is beyond the limits; what was delivered goes first",
                                    command, Action::kPrune);
  AddLimits(prune, command.settings.told);

  AddOutboxAction(outbox, "status", "How much is kept, and of what standing", command, Action::kStatus);
}

void AddDoctor(CLI::App& program, DoctorCommand& command) {
  CLI::App& app = *program.add_subcommand(kDoctor, "Tells which sources of figures are there, and which fail");
  AddMachine(app, command.machine);
  AddDatabaseFolder(app, command.database_dir);
  AddSettings(app, command.settings, "none");
  app.add_option_function<std::string>(
         "--format", [&command](const std::string& text) { command.format = *Find(kDoctorFormats, text); },
         "text: tables for people; json: one object a line for programs;\nopenmetrics: whether each source answers, "
         "and how "
         "long that takes")
      ->check(OneOf(kDoctorFormats))
      ->type_name(Names(kDoctorFormats, "|"))
      ->default_str("text");
  AddOutput(app, command.output);
  AddQueries(app, command.queries);
  app.footer(help::kDoctorNotes);
}

void AddNetwork(CLI::App& program, NetworkCommand& command) {
  CLI::App& app = *program.add_subcommand(kNetwork, "Shows the network of the machine as it is now");
  AddMachine(app, command.machine);
  AddSettings(app, command.settings, "warning");
  AddFormat(app, command.format);
  AddQueries(app, command.queries);
  app.footer(help::kNetworkNotes);
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
  app.footer(help::kSeedNotes);
}

void AddConfig(CLI::App& program, ConfigCommand& command) {
  using Action = ConfigCommand::Action;
  CLI::App& config = *program.add_subcommand(kConfig, "Checks and shows the configuration, or makes a key for it");
  config.require_subcommand(1);
  config.footer(help::kConfigNotes);
  const auto add = [&](const char* name, const char* description, Action action) -> CLI::App& {
    CLI::App& app = *config.add_subcommand(name, description);
    app.footer("");
    app.callback([&command, action] { command.action = action; });
    return app;
  };
  AddConfiguration(add("check", "Tells all that is wrong in the configuration", Action::kCheck), command.told);
  CLI::App& show = add("show", "What holds, and where it comes from; options as the commands take them", Action::kShow);
  AddConfiguration(show, command.told);
  AddOutboxFolder(show, command.told);
  AddLimits(show, command.told);
  AddLog(show, command.told, "each command's own");
  add("new-key", "Prints a new key for hashes, as redact.key takes it", Action::kNewKey);
}

// A command with one word behind it, which is one of `choices`.
template <typename T>
CLI::App& AddWithChoice(CLI::App& program, const char* name, const char* description, const char* word,
                        const Choices<T>& choices, T& chosen) {
  CLI::App& app = *program.add_subcommand(name, description);
  app.add_option_function<std::string>(
         word, [&choices, &chosen](const std::string& text) { chosen = *Find(choices, text); }, Names(choices, " or "))
      ->check(OneOf(choices))
      ->type_name("")
      ->required();
  return app;
}

std::vector<std::string> CommandsOf(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* const command : app.get_subcommands([](const CLI::App*) { return true; })) {
    names.push_back(command->get_name());
  }
  return names;
}

// "look, collect or machines".
std::string ListText(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) text += i + 1 == names.size() ? " or " : ", ";
    text += names[i];
  }
  return text;
}

// Without a command: look. A first word that is no command is told here, since the library would miss a command.
void CompleteCommand(const CLI::App& app, std::vector<std::string>& arguments) {
  constexpr std::array kOfTheProgram = {"-h", "--help", "--version"};
  const std::string first = arguments.empty() ? "-" : arguments.front();
  if (std::find(kOfTheProgram.begin(), kOfTheProgram.end(), first) != kOfTheProgram.end()) return;
  if (first.starts_with('-')) {
    arguments.insert(arguments.begin(), kLook);
    return;
  }
  const std::vector<std::string> commands = CommandsOf(app);
  if (std::find(commands.begin(), commands.end(), first) == commands.end()) {
    throw WrongUsage("there is no command \"" + first + "\"; expected " + ListText(commands) + "\nSee " + kProgram +
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
  WatchCommand watch;
  ReportCommand report;
  ConfigCommand config;
  EventSourceCommand event_source;
  Shell shell = Shell::kBash;

  CLI::App app(help::kDescription, kProgram);
  app.allow_windows_style_options(false);  // an argument that starts with a slash is a path
  app.set_version_flag("--version", &VersionText, "Print version, commit, contract and compiler and exit");
  app.set_help_flag("-h,--help", "Print this help and exit");
  app.get_formatter()->column_width(34);
  app.footer(help::kExamples);
  app.require_subcommand(1);
  AddLook(app, look);
  AddCollect(app, collect);
  AddOutbox(app, outbox);
  AddDoctor(app, doctor);
  AddNetwork(app, network);
  AddSeed(app, seed);
  AddSimulate(app, simulate);
  AddWatch(app, watch);
  AddReport(app, report);
  AddConfig(app, config);
  app.add_subcommand(kMachines, "Lists the simulated machines")->footer("");
  AddWithChoice(app, kEventSource, "Makes the program known to Windows' Event Log", "action", kEventSourceActions,
                event_source.adds)
      .footer(help::kEventSourceNotes);
  AddWithChoice(app, kCompletion, "Prints the completion for a shell", "shell", kShells, shell)
      .footer(help::kCompletionNotes);
  app.add_subcommand(kMan, "Prints the manual page")->footer(help::kManNotes);

  CompleteCommand(app, arguments);
  std::reverse(arguments.begin(), arguments.end());  // as the library takes them
  try {
    app.parse(std::move(arguments));
  } catch (const CLI::ParseError& error) {
    return ShowTextCommand{TextOrWrongUsage(app, error)};
  }
  for (CollectCommand* const cycle : {&look, &collect}) {
    if (cycle->events.empty()) cycle->events = {kDefaultEvent};
    cycle->log_level = cycle->settings.told.log_level.value_or(cycle->log_level);
  }
  simulate.log_level = simulate.settings.told.log_level.value_or(simulate.log_level);
  watch.log_level = watch.settings.told.log_level.value_or(watch.log_level);
  doctor.log_level = doctor.settings.told.log_level.value_or(doctor.log_level);
  network.log_level = network.settings.told.log_level.value_or(network.log_level);
  if (app.got_subcommand(kCollect)) return collect;
  if (app.got_subcommand(kOutbox)) return outbox;
  if (app.got_subcommand(kDoctor)) return doctor;
  if (app.got_subcommand(kNetwork)) return network;
  if (app.got_subcommand(kSeed)) return seed;
  if (app.got_subcommand(kSimulate)) return simulate;
  if (app.got_subcommand(kWatch)) return watch;
  if (app.got_subcommand(kReport)) return report;
  if (app.got_subcommand(kConfig)) return config;
  if (app.got_subcommand(kMachines)) return MachinesCommand{};
  if (app.got_subcommand(kEventSource)) return event_source;
  if (app.got_subcommand(kMan)) return ShowTextCommand{ManPage(app)};
  if (app.got_subcommand(kCompletion)) {
    return ShowTextCommand{shell == Shell::kBash ? BashCompletion(app, kLook) : PowerShellCompletion(app, kLook)};
  }
  return look;
}

}  // namespace zt::telemetry::host
