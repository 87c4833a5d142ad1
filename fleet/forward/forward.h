#pragma once

#include <ostream>

#include "fleet/forward/commands.h"

namespace zt::telemetry::fleet {

// The commands that forward; each returns the program's exit code and throws `host::Failure`.

int ForwardStdin(const StdinCommand& command, std::ostream& err);
int ForwardSpool(const SpoolCommand& command, std::ostream& err);
int ForwardOutboxes(const OutboxCommand& command, std::ostream& err);

}  // namespace zt::telemetry::fleet
