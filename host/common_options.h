#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "host/command.h"

namespace zt::telemetry::host {

// Options that several commands have. What they fill in must live as long as the command line is read.

CLI::Option* AddPath(CLI::App& app, const std::string& name, std::optional<std::filesystem::path>& path,
                     const std::string& type, const std::string& description);
CLI::Option* AddMachine(CLI::App& app, std::optional<std::string>& machine);
CLI::Option& AddFormat(CLI::App& app, OutputFormat& format);
CLI::Option* AddDatabaseFolder(CLI::App& app, std::optional<std::filesystem::path>& folder);
void AddQueries(CLI::App& app, std::optional<std::filesystem::path>& queries);
void AddOutput(CLI::App& app, std::optional<std::filesystem::path>& output);
void AddOutboxFolder(CLI::App& app, ToldSettings& told);
/// The limits of an outbox.
void AddLimits(CLI::App& app, ToldSettings& told);
/// The file of the configuration.
void AddConfiguration(CLI::App& app, ToldSettings& told);
/// Level and file of the log; `unless_told`: the level then, for the help.
void AddLog(CLI::App& app, ToldSettings& told, const std::string& unless_told);
/// What a command has in common with most others: the configuration and the log.
void AddSettings(CLI::App& app, CommonSettings& settings, const std::string& unless_told);

}  // namespace zt::telemetry::host
