#pragma once

#include <plog/Severity.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace zt::telemetry::host {

/// How results are written: for people, or one JSON object a line.
enum class OutputFormat { kText, kJson };

/// `collect`: runs the collector once for each event type.
struct CollectCommand {
  std::vector<std::int32_t> events;
  std::optional<std::filesystem::path> database_dir;
  std::optional<std::string> machine;
  std::optional<std::filesystem::path> plugin;
  plog::Severity log_level = plog::warning;
  OutputFormat format = OutputFormat::kText;
  std::optional<std::filesystem::path> output;
  std::optional<std::filesystem::path> queries;
};

/// `seed`: writes stored samples.
struct SeedCommand {
  std::filesystem::path database_dir;
  std::uint32_t hours = 0;
  std::uint32_t interfaces = 0;
  std::optional<std::chrono::sys_seconds> until;  // absent: the present
  std::uint64_t random_seed = 0;
};

/// `doctor`: asks every source of the machine.
struct DoctorCommand {
  std::optional<std::filesystem::path> database_dir;
  std::optional<std::string> machine;
  plog::Severity log_level = plog::none;
  OutputFormat format = OutputFormat::kText;
  std::optional<std::filesystem::path> queries;
};

/// `network`: shows the machine's network.
struct NetworkCommand {
  std::optional<std::string> machine;
  plog::Severity log_level = plog::warning;
  OutputFormat format = OutputFormat::kText;
  std::optional<std::filesystem::path> queries;
};

/// `machines`: lists the shipped machines.
struct MachinesCommand {};

/// The command line asked for a text: the help or the version.
struct ShowTextCommand {
  std::string text;
};

using Command =
    std::variant<CollectCommand, DoctorCommand, NetworkCommand, SeedCommand, MachinesCommand, ShowTextCommand>;

}  // namespace zt::telemetry::host
