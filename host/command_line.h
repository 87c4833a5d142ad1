#pragma once

#include <string>
#include <vector>

#include "host/command.h"

namespace zt::telemetry::host {

/// What the command line (UTF-8, without the program's own name) asks for. Without a command it means `look`. Throws
/// `Failure` with wrong usage that names the argument and what was expected.
Command ReadCommandLine(std::vector<std::string> arguments);

}  // namespace zt::telemetry::host
