#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "battery_figures.h"

namespace zt::shared::battery {

/// The batteries of this machine.
struct MachineBatteries {
  std::vector<std::optional<BatteryFigures>> by_index;  // absent where an index has none
  std::uint32_t error = 0;  // the system's code of the first battery that is there and cannot be read
};

MachineBatteries ReadBatteries();

}  // namespace zt::shared::battery
