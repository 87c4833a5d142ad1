#pragma once

#include <string>

#include <CLI/CLI.hpp>

namespace zt::telemetry::host {

/// The manual page of `app` (section 1) in the macros of man(7): all that its help tells.
std::string ManPage(CLI::App& app);

}  // namespace zt::telemetry::host
