#include "host/configuration/config_command.h"

#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "host/configuration/configure.h"
#include "host/configuration/setting_values.h"
#include "host/failure.h"
#include "host/program_environment.h"
#include "host/views/text_table.h"

namespace zt::telemetry::host {
namespace {

using Rows = std::vector<std::vector<Cell>>;

std::string OriginText(const Origin& origin) {
  switch (origin.kind) {
    case Origin::Kind::kFile:
      return "file, line " + std::to_string(origin.line);
    case Origin::Kind::kCommandLine:
      return "command line";
    case Origin::Kind::kDefault:
      break;
  }
  return "default";
}

std::string PathOr(const std::optional<std::filesystem::path>& path, const char* none) {
  return path.has_value() ? PathText(*path) : none;
}

Rows SettingRows(const Configuration& configuration) {
  Rows rows;
  const auto add = [&rows](const std::string& name, const std::string& value, const Origin& origin) {
    rows.push_back({{name}, {Printable(value)}, {OriginText(origin)}});
  };
  add("outbox.folder", PathOr(configuration.outbox_folder.value, "none"), configuration.outbox_folder.origin);
  add("outbox.max_bytes", std::to_string(configuration.max_bytes.value), configuration.max_bytes.origin);
  add("outbox.max_days", std::to_string(configuration.max_days.value), configuration.max_days.origin);
  const auto& level = configuration.log_level;
  add("log.level", level.value.has_value() ? std::string(NameOf(kLogLevels, *level.value)) : "warning; doctor: none",
      level.origin);
  add("log.file", PathOr(configuration.log_file.value, "standard error"), configuration.log_file.origin);
  for (std::size_t i = 0; i < kSectionNames.size(); ++i) {
    const Setting<bool>& section = configuration.sections.at(i);
    add("sections." + std::string(kSectionNames.at(i)), section.value ? "true" : "false", section.origin);
  }
  for (std::size_t i = 0; i < kIdentityNames.size(); ++i) {
    const Setting<Treatment>& identity = configuration.identities.at(i);
    add("redact." + std::string(kIdentityNames.at(i)), std::string(NameOf(kTreatments, identity.value)),
        identity.origin);
  }
  add("redact.key", configuration.key.value.has_value() ? "set; not shown" : "none", configuration.key.origin);
  return rows;
}

void CheckFile(const ToldSettings& told, std::ostream& out) {
  const Configuration configuration = Configure(told);
  out << PathText(configuration.file)
      << (configuration.file_is_there ? ": nothing is wrong" : ": there is no such file; the defaults hold")
      << std::endl;
}

void ShowSettings(const ToldSettings& told, std::ostream& out) {
  constexpr std::size_t kNoIndent = 0;
  constexpr std::size_t kAnyWidth = std::numeric_limits<std::size_t>::max();
  const Configuration configuration = Configure(told);
  out << "file: " << PathText(configuration.file) << (configuration.file_is_there ? "" : " (there is none)") << "\n\n"
      << TableText({"setting", "value", "from"}, SettingRows(configuration), kNoIndent, kAnyWidth) << std::flush;
}

}  // namespace

int ShowConfiguration(const ConfigCommand& command, std::ostream& out) {
  using Action = ConfigCommand::Action;
  switch (command.action) {
    case Action::kCheck:
      CheckFile(command.told, out);
      break;
    case Action::kShow:
      ShowSettings(command.told, out);
      break;
    case Action::kNewKey:
      out << KeyText(NewKey()) << std::endl;
      break;
  }
  return kExitDone;
}

}  // namespace zt::telemetry::host
