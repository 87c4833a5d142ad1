#pragma once

#include <filesystem>

#include "zt/zt_simulation_export.h"

namespace zt::simulation {

/// The folder of this library, which holds the stand-ins of the vendors' libraries too. Empty when the system does not
/// tell.
ZT_SIMULATION_EXPORT std::filesystem::path LibraryFolder();

}  // namespace zt::simulation
