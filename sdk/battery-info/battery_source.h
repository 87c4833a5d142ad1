#pragma once

#include <optional>
#include <vector>

#include "battery_figures.h"

namespace zt::shared::battery {

/// The batteries of this machine by their index; absent where an index has none.
std::vector<std::optional<BatteryFigures>> ReadBatteries();

}  // namespace zt::shared::battery
