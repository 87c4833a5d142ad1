#pragma once

#include <span>

#include "host/inspection/check.h"

namespace zt::telemetry::host::inspection {

/// Each vendor's back-end alone: the pass over the graphics cards counts one that fails as one without cards.
std::span<const Check> GraphicsVendors();

}  // namespace zt::telemetry::host::inspection
