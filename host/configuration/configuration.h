#pragma once

#include <plog/Severity.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>

#include "host/consent/consent.h"
#include "host/outbox/outbox_limits.h"

namespace zt::telemetry::host {

/// Where a setting comes from. What is said later in this order holds.
struct Origin {
  enum class Kind { kDefault, kFile, kCommandLine };

  Kind kind = Kind::kDefault;
  /// Of the configuration file, from 1.
  std::uint32_t line = 0;
};

template <typename T>
struct Setting {
  T value{};
  Origin origin = {};
};

/// What the command line says of what the configuration file can say too.
struct ToldSettings {
  std::optional<std::filesystem::path> file;  // `--config`
  std::optional<std::filesystem::path> outbox_folder;
  std::optional<std::int64_t> max_bytes;
  std::optional<std::int64_t> max_days;
  std::optional<plog::Severity> log_level;
  std::optional<std::filesystem::path> log_file;
};

/// All that can be set, with what holds where nobody says anything.
struct Configuration {
  std::filesystem::path file;
  bool file_is_there = false;

  Setting<std::optional<std::filesystem::path>> outbox_folder;
  Setting<std::int64_t> max_bytes{OutboxLimits().bytes};
  Setting<std::int64_t> max_days{OutboxLimits().age.count()};
  Setting<std::optional<plog::Severity>> log_level;        // absent: each command's own
  Setting<std::optional<std::filesystem::path>> log_file;  // absent: standard error
  std::array<Setting<bool>, kSectionNames.size()> sections;
  std::array<Setting<Treatment>, kIdentityNames.size()> identities;
  Setting<std::optional<HashKey>> key;

  Configuration() { sections.fill({true}); }

  OutboxLimits Limits() const;
  /// The consent that the file gives.
  Consent GivenConsent() const;
};

}  // namespace zt::telemetry::host
