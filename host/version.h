#pragma once

#include <string>

namespace zt::telemetry::host {

/// The program's name and version, on one line.
std::string ProgramAndVersion();

/// What was built: name and version, and a line each for the commit, the contract's version, and the compiler with the
/// system that it builds for. No line end behind the last.
std::string VersionText();

}  // namespace zt::telemetry::host
