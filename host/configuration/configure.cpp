#include "host/configuration/configure.h"

#include <string>
#include <system_error>
#include <vector>

#include "host/configuration/configuration_file.h"
#include "host/failure.h"
#include "host/program_environment.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;

Failure ProblemsOf(const fs::path& file, const std::vector<ConfigurationProblem>& problems) {
  std::string text = "the configuration cannot be used";
  for (const ConfigurationProblem& problem : problems) {
    text += "\n" + PathText(file) + ":" + std::to_string(problem.line) + ": ";
    text += (problem.key.empty() ? "" : problem.key + ": ") + problem.text;
  }
  return WrongUsage(text);
}

template <typename T, typename S>
void Override(const std::optional<T>& told, Setting<S>& setting) {
  if (told.has_value()) setting = {*told, {Origin::Kind::kCommandLine}};
}

void GiveCommon(const Configuration& configuration, CommonSettings& settings, plog::Severity& level) {
  level = configuration.log_level.value.value_or(level);
  settings.log_file = configuration.log_file.value;
  settings.consent = configuration.GivenConsent();
}

// Gives each kind of command what it takes.
class Giver {
 public:
  void operator()(CollectCommand& command) const {
    const Configuration configuration = Configure(command.settings.told);
    GiveCommon(configuration, command.settings, command.log_level);
    command.limits = configuration.Limits();
    // Who says how, or where, the hand-overs are to be shown wants to see them.
    const bool is_shown = command.format_told || command.output.has_value();
    if (command.takes_samples && !command.outbox.has_value() && !is_shown) {
      command.outbox = configuration.outbox_folder.value;
    }
  }

  void operator()(OutboxCommand& command) const {
    const Configuration configuration = Configure(command.settings.told);
    if (!configuration.outbox_folder.value.has_value()) {
      throw WrongUsage("--outbox is missing; expected the folder of an outbox here, or as outbox.folder in " +
                       PathText(configuration.file));
    }
    command.folder = *configuration.outbox_folder.value;
    command.limits = configuration.Limits();
    GiveCommon(configuration, command.doctor.settings, command.doctor.log_level);
  }

  void operator()(ReportCommand& command) const {
    const Configuration configuration = Configure(command.told);
    if (command.told.outbox_folder.has_value() || command.records.empty()) {
      command.outbox = configuration.outbox_folder.value;
    }
    if (command.outbox.has_value() || !command.records.empty()) return;
    throw WrongUsage("--outbox and --records are missing; expected one of them, or outbox.folder in " +
                     PathText(configuration.file));
  }

  void operator()(SimulateCommand& command) const {
    GiveCommon(Configure(command.settings.told), command.settings, command.log_level);
  }

  void operator()(WatchCommand& command) const {
    GiveCommon(Configure(command.settings.told), command.settings, command.log_level);
  }

  void operator()(DoctorCommand& command) const {
    GiveCommon(Configure(command.settings.told), command.settings, command.log_level);
  }

  void operator()(NetworkCommand& command) const {
    GiveCommon(Configure(command.settings.told), command.settings, command.log_level);
  }

  template <typename Other>
  void operator()(Other&) const {}
};

}  // namespace

Configuration Configure(const ToldSettings& told) {
  Configuration configuration;
  configuration.file = told.file.value_or(DefaultConfigurationFile());
  std::error_code error;
  configuration.file_is_there = fs::exists(configuration.file, error);
  // One that nobody may look for may be there, and hold something back.
  if (error) throw WrongUsage(PathText(configuration.file) + ": " + error.message());
  if (told.file.has_value() && !configuration.file_is_there) {
    throw WrongUsage("--config " + PathText(configuration.file) + ": there is no such file");
  }
  if (configuration.file_is_there) {
    const std::vector<ConfigurationProblem> problems = ReadConfigurationFile(configuration);
    if (!problems.empty()) throw ProblemsOf(configuration.file, problems);
  }
  Override(told.outbox_folder, configuration.outbox_folder);
  Override(told.max_bytes, configuration.max_bytes);
  Override(told.max_days, configuration.max_days);
  Override(told.log_level, configuration.log_level);
  Override(told.log_file, configuration.log_file);
  return configuration;
}

void ConfigureCommand(Command& command) {
  std::visit(Giver(), command);
}

}  // namespace zt::telemetry::host
