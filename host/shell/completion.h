#pragma once

#include <string>

#include <CLI/CLI.hpp>

namespace zt::telemetry::host {

/// What completes the commands, options and values of `app` in a shell: a script that holds all of the definition, so
/// that the program does not run on each press of a key. `unless_told` is the command that is meant without one.
std::string BashCompletion(CLI::App& app, const std::string& unless_told);
std::string PowerShellCompletion(CLI::App& app, const std::string& unless_told);

}  // namespace zt::telemetry::host
