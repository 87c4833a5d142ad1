#include "host/common_options.h"

#include <limits>

#include "host/configuration/setting_values.h"
#include "host/option_values.h"
#include "host/program_environment.h"

namespace zt::telemetry::host {
namespace {

const Choices<OutputFormat> kFormats = {{"text", OutputFormat::kText}, {"json", OutputFormat::kJson}};

}  // namespace

CLI::Option* AddPath(CLI::App& app, const std::string& name, std::optional<std::filesystem::path>& path,
                     const std::string& type, const std::string& description) {
  return app
      .add_option_function<std::string>(
          name, [&path](const std::string& text) { path = PathFromText(text); }, description)
      ->check(Name())
      ->type_name(type);
}

CLI::Option* AddMachine(CLI::App& app, std::optional<std::string>& machine) {
  return app
      .add_option_function<std::string>(
          "--machine", [&machine](const std::string& text) { machine = text; },
          "Simulated machine to sample: a name that `machines` lists, or a profile file")
      ->check(Name())
      ->type_name("NAME|FILE");
}

CLI::Option& AddFormat(CLI::App& app, OutputFormat& format) {
  return *app.add_option_function<std::string>(
                 "--format", [&format](const std::string& text) { format = *Find(kFormats, text); },
                 "text: tables for people; json: one object a line for programs")
              ->check(OneOf(kFormats))
              ->type_name("json|text")
              ->default_str("text");
}

void AddConfiguration(CLI::App& app, ToldSettings& told) {
  AddPath(app, "--config", told.file, "FILE", "Configuration, by default\n" + PathText(DefaultConfigurationFile()));
}

void AddLog(CLI::App& app, ToldSettings& told, const std::string& unless_told) {
  app.add_option_function<std::string>(
         "--log-level", [&told](const std::string& text) { told.log_level = *Find(kLogLevels, text); },
         "Least severe log lines to show: none, fatal, error, warning, info,\ndebug, verbose")
      ->check(OneOf(kLogLevels))
      ->type_name("LEVEL")
      ->default_str(unless_told);
  AddPath(app, "--log-file", told.log_file, "FILE", "Add the log lines to this file instead of showing them");
}

void AddSettings(CLI::App& app, CommonSettings& settings, const std::string& unless_told) {
  AddLog(app, settings.told, unless_told);
  AddConfiguration(app, settings.told);
}

CLI::Option* AddDatabaseFolder(CLI::App& app, std::optional<std::filesystem::path>& folder) {
  return AddPath(app, "--database-dir", folder, "DIR", "Folder of \"ssm.db\", the stored samples");
}

void AddQueries(CLI::App& app, std::optional<std::filesystem::path>& queries) {
  AddPath(app, "--queries", queries, "FILE", "Write the text of every WQL query here, one a line");
}

void AddOutboxFolder(CLI::App& app, ToldSettings& told) {
  AddPath(app, "--outbox", told.outbox_folder, "DIR", "Folder of the outbox, by default the configuration's");
}

void AddLimits(CLI::App& app, ToldSettings& told) {
  app.add_option("--max-bytes", told.max_bytes, "Size of the records to keep")
      ->transform(WholeNumber<std::int64_t>(0, std::numeric_limits<std::int64_t>::max()))
      ->type_name("N")
      ->default_str(std::to_string(Configuration().max_bytes.value));
  app.add_option("--max-days", told.max_days, "Age up to which delivered ones are kept")
      ->transform(WholeNumber<std::int64_t>(0, kMostDays))
      ->type_name("N")
      ->default_str(std::to_string(Configuration().max_days.value));
}

void AddOutput(CLI::App& app, std::optional<std::filesystem::path>& output) {
  AddPath(app, "--output", output, "FILE", "Write it here instead of standard output");
}

}  // namespace zt::telemetry::host
