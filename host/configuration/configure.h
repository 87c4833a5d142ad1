#pragma once

#include "host/command.h"
#include "host/configuration/configuration.h"

namespace zt::telemetry::host {

/// What holds: the defaults, over them the configuration file (`--config`, else the one in the system's folder, which
/// may be missing), over that the command line. Throws `Failure` with wrong usage that tells all that is wrong.
Configuration Configure(const ToldSettings& told);

/// Gives `command` what the configuration has for it. Throws as `Configure` does, and where a command needs a setting
/// that nobody gives.
void ConfigureCommand(Command& command);

}  // namespace zt::telemetry::host
