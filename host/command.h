#pragma once

#include <plog/Severity.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "host/configuration/configuration.h"
#include "host/outbox/outbox_limits.h"

namespace zt::telemetry::host {

/// How results are written: for people, one JSON object a line, or as metrics (by the doctor alone).
enum class OutputFormat { kText, kJson, kOpenMetrics };

/// Where the log of a collection goes.
enum class LogTarget { kStandardError, kEventLog };

/// What most commands have in common: what their command line says of it, and what the configuration gives.
struct CommonSettings {
  ToldSettings told;
  LogTarget log_target = LogTarget::kStandardError;
  std::optional<std::filesystem::path> log_file;  // in the place of standard error
  Consent consent;
};

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
  bool format_told = false;
  std::optional<std::filesystem::path> output;
  std::optional<std::filesystem::path> queries;
  CommonSettings settings;
  OutboxLimits limits;
};

/// `doctor`: asks every source of the machine.
struct DoctorCommand {
  std::optional<std::filesystem::path> database_dir;
  std::optional<std::string> machine;
  plog::Severity log_level = plog::none;
  OutputFormat format = OutputFormat::kText;
  std::optional<std::filesystem::path> output;
  std::optional<std::filesystem::path> queries;
  CommonSettings settings;
};

/// `outbox`: shows or thins out what collections have kept.
struct OutboxCommand {
  enum class Action { kList, kShow, kExport, kPrune, kStatus };
  enum class Form { kJson, kProtobuf, kOpenMetrics };

  Action action = Action::kStatus;
  std::filesystem::path folder;
  bool all = false;
  std::int64_t after = 0;
  std::int64_t count = -1;  // all
  std::int64_t id = 0;
  Form form = Form::kJson;
  std::string message;
  std::optional<std::filesystem::path> output;
  OutboxLimits limits;
  CommonSettings settings;
  bool asks_sources = false;  // for metrics: with what the doctor finds
  DoctorCommand doctor = {};
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
  plog::Severity log_level = plog::warning;
  std::optional<std::filesystem::path> outbox;
  std::optional<std::filesystem::path> output;
  CommonSettings settings;
};

/// `watch`: the live record on a terminal, again and again.
struct WatchCommand {
  std::optional<std::string> machine;
  std::optional<std::filesystem::path> plugin;
  std::chrono::seconds every{5};
  plog::Severity log_level = plog::warning;
  CommonSettings settings;
};

/// `network`: shows the machine's network.
struct NetworkCommand {
  std::optional<std::string> machine;
  plog::Severity log_level = plog::warning;
  OutputFormat format = OutputFormat::kText;
  std::optional<std::filesystem::path> queries;
  CommonSettings settings;
};

/// `config`: looks at the configuration, or makes a key for it.
struct ConfigCommand {
  enum class Action { kCheck, kShow, kNewKey };

  Action action = Action::kCheck;
  ToldSettings told;
};

/// `report`: writes records as pages for people.
struct ReportCommand {
  ToldSettings told;
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

/// `event-source`: makes the program known to the system's Event Log, or unknown again.
struct EventSourceCommand {
  bool adds = true;
};

/// The command line asked for a text: the help, the version, the man page or a shell's completion.
struct ShowTextCommand {
  std::string text;
};

using Command =
    std::variant<CollectCommand, OutboxCommand, DoctorCommand, NetworkCommand, SeedCommand, SimulateCommand,
                 WatchCommand, ReportCommand, ConfigCommand, MachinesCommand, EventSourceCommand, ShowTextCommand>;

}  // namespace zt::telemetry::host
