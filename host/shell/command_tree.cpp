#include "host/shell/command_tree.h"

#include <algorithm>
#include <sstream>

#include "host/machine_choice.h"

namespace zt::telemetry::host {
namespace {

constexpr char kMachineType[] = "NAME|FILE";

std::string WithoutLineBreaks(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return text;
}

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

// The values that an option takes by name are the name of its first check.
std::vector<std::string> ValuesOf(CLI::Option& option) {
  if (option.get_type_name() == kMachineType) {
    std::vector<std::string> names;
    for (const ShippedMachine& machine : ShippedMachines()) names.push_back(machine.name);
    return names;
  }
  try {
    return Split(option.get_validator(0)->get_name(), '|');
  } catch (const CLI::OptionNotFound&) {
    return {};
  }
}

OptionEntry EntryOf(CLI::Option& option) {
  OptionEntry entry;
  for (const std::string& name : option.get_snames()) entry.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) entry.names.push_back("--" + name);
  if (!option.nonpositional()) entry.word = option.get_name();
  entry.description = WithoutLineBreaks(option.get_description());
  entry.takes_value = option.get_items_expected_max() > 0;
  entry.required = option.get_required();
  if (!entry.takes_value) return entry;
  entry.type = option.get_type_name();
  entry.unless_told = option.get_default_str();
  entry.values = ValuesOf(option);
  entry.takes_files = entry.type.ends_with("FILE");
  entry.takes_folders = entry.type == "DIR";
  return entry;
}

void AddCommand(CLI::App& app, const std::string& path, std::vector<CommandEntry>& tree) {
  CommandEntry entry{path, app.get_description(), app.get_footer(), {}, {}};
  for (CLI::Option* const option : app.get_options([](CLI::Option*) { return true; })) {
    entry.options.push_back(EntryOf(*option));
  }
  const std::vector<CLI::App*> commands = app.get_subcommands([](CLI::App*) { return true; });
  for (const CLI::App* const command : commands) entry.commands.push_back(command->get_name());
  tree.push_back(std::move(entry));
  for (CLI::App* const command : commands) {
    AddCommand(*command, path.empty() ? command->get_name() : path + " " + command->get_name(), tree);
  }
}

}  // namespace

std::vector<CommandEntry> CommandTree(CLI::App& app) {
  std::vector<CommandEntry> tree;
  AddCommand(app, "", tree);
  return tree;
}

}  // namespace zt::telemetry::host
