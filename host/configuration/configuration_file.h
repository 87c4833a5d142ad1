#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "host/configuration/configuration.h"

namespace zt::telemetry::host {

/// What is wrong in a configuration file.
struct ConfigurationProblem {
  std::uint32_t line = 0;
  std::string key;   // "outbox.max_bytes"; empty where the file is no TOML
  std::string text;  // what was expected, and what stands there
};

/// Reads the settings of `text`, a TOML document in UTF-8, into `configuration`, whose `file` is where it comes from:
/// a path in it that is not absolute is meant from that file's folder. Returns all that is wrong, by lines; a setting
/// that is wrong stays as it was. A key for hashes is in no text.
std::vector<ConfigurationProblem> ReadSettings(std::string_view text, Configuration& configuration);

/// The same of the file itself. Throws `Failure` with wrong usage when it cannot be read.
std::vector<ConfigurationProblem> ReadConfigurationFile(Configuration& configuration);

}  // namespace zt::telemetry::host
