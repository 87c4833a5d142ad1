#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace zt::telemetry::host {

/// An option of a command, or a word that stands behind it.
struct OptionEntry {
  std::vector<std::string> names;  // "-h", "--help"; a word behind a command has none
  std::string word;                // what a word behind a command is called
  std::string description;         // one line
  std::string type;                // "FILE"; empty for a flag
  std::string unless_told;         // its default, empty without one
  bool required = false;
  bool takes_value = false;
  std::vector<std::string> values;  // those that it can have, where they are known
  bool takes_files = false;
  bool takes_folders = false;
};

/// A command as the command line defines it; the first one of a list is the program itself.
struct CommandEntry {
  std::string path;  // "outbox list", empty for the program
  std::string description;
  std::string notes;                  // the text behind its help
  std::vector<std::string> commands;  // names of those below it
  std::vector<OptionEntry> options;
};

/// All commands of `app`, each before those below it.
std::vector<CommandEntry> CommandTree(CLI::App& app);

}  // namespace zt::telemetry::host
