#pragma once

#include "tests/endurance/figures.h"

namespace zt::endurance {

/// What this process holds now: memory, handles, threads, loaded libraries. `loads`: how often a library was loaded and
/// unloaded, of which a sanitizer keeps some bytes each time.
Snapshot ProcessFigures(std::int64_t loads);

}  // namespace zt::endurance
