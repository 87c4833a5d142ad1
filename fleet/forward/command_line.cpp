#include <limits>

#include <CLI/CLI.hpp>

#include "fleet/forward/commands.h"
#include "host/failure.h"
#include "host/option_values.h"
#include "host/program_environment.h"
#include "host/utc_time.h"

namespace zt::telemetry::fleet {
namespace {

constexpr char kAbout[] =
    "Hands the records of many machines to Kafka: each one once it is known to be kept by all replicas.";
constexpr char kExamples[] = R"(
Examples
  Is the configuration as it should be?
    zt-telemetry-forward check --config /etc/zt-telemetry/forward.toml
  A gateway's service: forwards each file that is put into the spool folder
    zt-telemetry-forward spool --config /etc/zt-telemetry/forward.toml
  What would become of these lines? Nothing is sent:
    zt-telemetry-host outbox export --outbox outbox | zt-telemetry-forward stdin --config forward.toml --dry-run
  Records in protobuf's form, each behind its length
    zt-telemetry-forward stdin --config forward.toml --format protobuf < records.pb
  What is kept in outboxes and was not delivered
    zt-telemetry-forward outbox --config forward.toml /srv/outboxes/*
  A day of 1,000 simulated machines
    zt-telemetry-forward simulate --machines 1000 --hours 24 --config forward.toml

Ends with 0 when everything was delivered, 1 when not, and 2 when it was told something that cannot be.)";
constexpr char kSimulateNotes[] = R"(
The same numbers give the same records. Without --raw some machines sleep, break, send records again and late, have
wrong clocks, and are of older versions of the contract.)";

constexpr std::uint32_t kMostMachines = 1'000'000;
constexpr std::uint32_t kMostHours = 87'600;  // ten years
constexpr std::uint32_t kMostThreads = 64;

const host::Choices<InputForm> kInputForms = {
    {"auto", InputForm::kUnknown}, {"lines", InputForm::kLines}, {"protobuf", InputForm::kDelimited}};
const host::Choices<OutputForm> kOutputForms = {{"lines", OutputForm::kLines}, {"protobuf", OutputForm::kDelimited}};

void AddPath(CLI::App& app, const std::string& name, const std::string& about, std::filesystem::path& path) {
  app.add_option_function<std::string>(
         name, [&path](const std::string& text) { path = host::PathFromText(text); }, about)
      ->check(host::Name())
      ->type_name("FILE");
}

void AddConfiguration(CLI::App& app, std::filesystem::path& path) {
  AddPath(app, "--config", "The configuration, TOML", path);
  app.get_option("--config")->required();
}

void AddDryRun(CLI::App& app, bool& dry_run) {
  app.add_flag("--dry-run", dry_run, "Read everything, tell what is wrong with it, send and remove nothing");
}

template <typename T>
void AddChoice(CLI::App& app, const std::string& name, const std::string& about, const host::Choices<T>& choices,
               T& value) {
  app.add_option_function<std::string>(
         name, [&choices, &value](const std::string& text) { value = *host::Find(choices, text); }, about)
      ->check(host::OneOf(choices));
}

template <typename T>
void AddNumber(CLI::App& app, const std::string& name, const std::string& about, T least, T greatest, T& value) {
  app.add_option(name, value, about)->transform(host::WholeNumber<T>(least, greatest))->type_name("N");
}

void AddStdin(CLI::App& program, StdinCommand& command) {
  CLI::App& app = *program.add_subcommand("stdin", "Forwards what is read from standard input");
  AddConfiguration(app, command.config);
  AddChoice(app, "--format", "By default seen from the input's beginning", kInputForms, command.form);
  AddDryRun(app, command.dry_run);
}

void AddSpool(CLI::App& program, SpoolCommand& command) {
  CLI::App& app = *program.add_subcommand("spool", "Forwards the files of the spool folder, and those that come");
  AddConfiguration(app, command.config);
  app.add_flag("--once", command.once, "End when those that are there were forwarded");
  AddDryRun(app, command.dry_run);
}

void AddOutbox(CLI::App& program, OutboxCommand& command) {
  CLI::App& app = *program.add_subcommand("outbox", "Forwards what outboxes keep and was not delivered");
  AddConfiguration(app, command.config);
  app.add_option_function<std::vector<std::string>>(
         "FOLDER",
         [&command](const std::vector<std::string>& texts) {
           for (const std::string& text : texts) command.folders.push_back(host::PathFromText(text));
         },
         "Folders of outboxes")
      ->check(host::Name())
      ->required();
  AddDryRun(app, command.dry_run);
}

void AddSimulate(CLI::App& program, SimulateCommand& command) {
  CLI::App& app = *program.add_subcommand("simulate", "Makes the records of simulated machines over hours");
  AddNumber<std::uint32_t>(app, "--machines", "Machines", 1, kMostMachines, command.machines);
  AddNumber<std::uint32_t>(app, "--hours", "Hours that pass", 1, kMostHours, command.hours);
  app.get_option("--machines")->required();
  app.get_option("--hours")->required();
  AddNumber<std::uint32_t>(app, "--first-machine", "Number of the first one: several processes share a fleet", 0,
                           kMostMachines, command.first_machine);
  AddNumber<std::uint64_t>(app, "--random-seed", "Another number gives another fleet of the same kind", 0,
                           std::numeric_limits<std::uint64_t>::max(), command.random_seed);
  AddNumber<std::uint32_t>(app, "--threads", "Processors to use; each makes the records of its own machines", 1,
                           kMostThreads, command.threads);
  app.add_option_function<std::string>(
         "--until", [&command](const std::string& text) { command.until = host::ParseUtcTime(text).value(); },
         "End of the last hour in UTC, by default 2026-03-07T14:00:00Z")
      ->check(host::UtcTimeText())
      ->type_name("TIME");
  app.add_flag("--raw", command.raw, "Machines that neither sleep nor break, each record once and in order");
  app.add_option_function<std::string>(
         "--config", [&command](const std::string& text) { command.config = host::PathFromText(text); },
         "Produce to the Kafka of this configuration")
      ->check(host::Name())
      ->type_name("FILE");
  app.add_option_function<std::string>(
         "--output", [&command](const std::string& text) { command.output = host::PathFromText(text); },
         "Write them into this file instead of standard output")
      ->check(host::Name())
      ->type_name("FILE");
  app.add_option_function<std::string>(
         "--spool", [&command](const std::string& text) { command.spool = host::PathFromText(text); },
         "Put them into this folder, a file for each hour of some\nmachines")
      ->check(host::Name())
      ->type_name("DIR");
  AddChoice(app, "--format", "Of what is written; protobuf has the upload records alone", kOutputForms, command.form);
  app.add_flag("--count", command.count_only, "Make them, and only count them and their bytes");
  app.footer(kSimulateNotes);
}

}  // namespace

Command ReadCommandLine(const std::vector<std::string>& arguments) {
  CLI::App program(kAbout, "zt-telemetry-forward");
  program.set_version_flag("--version", std::string("zt-telemetry-forward ") + ZT_VERSION);
  program.require_subcommand(1);
  program.footer(kExamples);
  StdinCommand from_stdin;
  SpoolCommand spool;
  OutboxCommand outbox;
  CheckCommand check;
  SimulateCommand simulate;
  AddStdin(program, from_stdin);
  AddSpool(program, spool);
  AddOutbox(program, outbox);
  AddConfiguration(*program.add_subcommand("check", "Tells whether a configuration is as it should be, and shows it"),
                   check.config);
  AddSimulate(program, simulate);
  try {
    program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::ParseError& error) {
    std::ostringstream out;
    std::ostringstream err;
    if (program.exit(error, out, err) == 0) return ShowTextCommand{out.str()};
    throw host::WrongUsage(error.what() + std::string("; --help tells what is expected"));
  }
  if (program.got_subcommand("stdin")) return from_stdin;
  if (program.got_subcommand("spool")) return spool;
  if (program.got_subcommand("outbox")) return outbox;
  if (program.got_subcommand("check")) return check;
  return simulate;
}

}  // namespace zt::telemetry::fleet
