#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/configuration/configuration_file.h"

namespace zt::telemetry::fleet {

/// A property of the Kafka client that the configuration passes on as it is.
struct ClientProperty {
  std::string name;
  std::string value;
  std::uint32_t line = 0;  // of the configuration file
};

struct KafkaSettings {
  std::string brokers;  // "host:port", several joined by commas
  std::string upload_topic = "zt.upload";
  bool upload_topics_by_kind = true;  // records of one kind alone go to that name with ".live", ".thermal", ".network"
  std::string storage_topic = "zt.storage";
  std::string dead_letter_topic = "zt.dead-letter";
  std::string compression = "lz4";
  std::int64_t queue_messages = 20'000;   // that wait for their delivery reports at most
  std::int64_t queue_kibibytes = 32'768;  // and their size
  std::vector<ClientProperty> client;
};

struct SpoolSettings {
  std::optional<std::filesystem::path> folder;
  std::optional<std::filesystem::path> done_folder;  // absent: files are removed
  std::int64_t retry_seconds = 30;
};

struct MetricsSettings {
  std::optional<std::filesystem::path> file;
  std::optional<std::int64_t> port;  // of 127.0.0.1
};

/// What `zt-telemetry-forward` is told by its configuration file.
struct Settings {
  KafkaSettings kafka;
  SpoolSettings spool;
  MetricsSettings metrics;
  std::string contract_version;  // of records that do not tell their own
};

/// Reads `text`, a TOML document, into `settings`; `file` is where it comes from: a path in it that is not absolute is
/// meant from that file's folder. Returns all that is wrong, by lines.
std::vector<host::ConfigurationProblem> ReadSettings(std::string_view text, const std::filesystem::path& file,
                                                     Settings& settings);

/// The settings of a file. Throws `host::Failure` with wrong usage, which tells all that is wrong in it.
Settings ReadSettingsFile(const std::filesystem::path& file);

/// The settings as text, each in a line; what is secret is not told.
std::string SettingsText(const Settings& settings);

}  // namespace zt::telemetry::fleet
