#pragma once

#include <functional>

#include "zt/zt_simulation_export.h"

namespace zt::simulation {

/// Called before the machine's firmware answers a command; what it throws is the client's exception. An empty function
/// ends it.
ZT_SIMULATION_EXPORT void ObserveFirmwareCommands(std::function<void()> observer);

/// Tells the observer, where there is one, that a command is about to be answered.
ZT_SIMULATION_EXPORT void AnnounceFirmwareCommand();

}  // namespace zt::simulation
