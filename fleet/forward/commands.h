#pragma once

#include <cstdint>
#include <filesystem>
#include <istream>
#include <optional>
#include <ostream>
#include <string>
#include <variant>
#include <vector>

#include "fleet/forward/record_splitter.h"
#include "fleet/simulate/simulate.h"

namespace zt::telemetry::fleet {

/// `zt-telemetry-forward stdin`
struct StdinCommand {
  std::filesystem::path config;
  InputForm form = InputForm::kUnknown;
  bool dry_run = false;
};

/// `zt-telemetry-forward spool`
struct SpoolCommand {
  std::filesystem::path config;
  bool once = false;
  bool dry_run = false;
};

/// `zt-telemetry-forward outbox`
struct OutboxCommand {
  std::filesystem::path config;
  std::vector<std::filesystem::path> folders;
  bool dry_run = false;
};

/// `zt-telemetry-forward check`
struct CheckCommand {
  std::filesystem::path config;
};

/// A text that the command line itself asks for, such as its help.
struct ShowTextCommand {
  std::string text;
};

using Command = std::variant<StdinCommand, SpoolCommand, OutboxCommand, CheckCommand, SimulateCommand, ShowTextCommand>;

/// Reads the command line, UTF-8, without the program's own name. Throws `host::Failure` with wrong usage.
Command ReadCommandLine(const std::vector<std::string>& arguments);

/// Runs the program; returns its exit code: 0 done, 1 not all of it, 2 wrong usage.
int Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err);

}  // namespace zt::telemetry::fleet
