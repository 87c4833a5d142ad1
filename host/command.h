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

/// `collect` and `look`: run the collector once for each event type.
struct CollectCommand {
  bool takes_samples = false;  // `collect`: what was sent is deleted from the stored samples
  std::optional<std::filesystem::path> outbox;
  std::vector<std::int32_t> events;
  std::optional<std::filesystem::path> database_dir;
  std::optional<std::string> machine;
  std::optional<std::filesystem::path> plugin;
  plog::Severity log_level = plog::warning;
  OutputFormat format = OutputFormat::kText;
  std::optional<std::filesystem::path> output;
  std::optional<std::filesystem::path> queries;
};

/// `outbox`: shows or thins out what collections have kept.
struct OutboxCommand {
  enum class Action { kList, kShow, kExport, kPrune, kStatus };
  enum class Form { kJson, kProtobuf };

  Action action = Action::kStatus;
  std::filesystem::path folder;
  bool all = false;
  std::int64_t after = 0;
  std::int64_t count = -1;  // all
  std::int64_t id = 0;
  Form form = Form::kJson;
  std::string message;
  std::optional<std::filesystem::path> output;
  std::int64_t max_bytes = std::int64_t{256} * 1024 * 1024;
  std::int64_t max_days = 90;
};

/// `seed`: writes stored samples.
struct SeedCommand {
  std::filesystem::path database_dir;
  std::uint32_t hours = 0;
  std::uint32_t interfaces = 0;
  std::optional<std::chrono::sys_seconds> until;  // absent: the present
  std::uint64_t random_seed = 0;
};

/// `simulate`: live records of a simulated machine over many hours.
struct SimulateCommand {
  std::uint32_t hours = 0;
  std::optional<std::chrono::sys_seconds> until;  // absent: the present
  std::uint64_t random_seed = 0;
  std::optional<std::filesystem::path> plugin;
  std::optional<std::filesystem::path> outbox;
  std::optional<std::filesystem::path> output;
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

/// `report`: writes records as pages for people.
struct ReportCommand {
  std::optional<std::filesystem::path> outbox;
  std::vector<std::filesystem::path> records;
  std::optional<std::string> machine_name;
  std::optional<std::chrono::sys_seconds> from;  // by the machine's wall clock
  std::optional<std::chrono::sys_seconds> to;
  std::optional<std::string> serial;
  std::filesystem::path output;
};

/// `machines`: lists the shipped machines.
struct MachinesCommand {};

/// The command line asked for a text: the help or the version.
struct ShowTextCommand {
  std::string text;
};

using Command = std::variant<CollectCommand, OutboxCommand, DoctorCommand, NetworkCommand, SeedCommand, SimulateCommand,
                             ReportCommand, MachinesCommand, ShowTextCommand>;

}  // namespace zt::telemetry::host
