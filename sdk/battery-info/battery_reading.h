#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/device_asking.h"
#include "battery_protocol.h"

namespace zt::shared::battery {

using base::ControlDevice;
using base::ControlOutcome;

/// What a battery's driver answered. Texts are UTF-8, without the blanks around them; empty where the driver has none.
struct BatteryReading {
  protocol::Information information;
  protocol::Status status;
  std::optional<std::uint32_t> temperature_tenth_kelvin;
  std::string serial_number;
  std::string unique_id;
  std::string device_name;
};

/// What reading a slot gave.
struct SlotReading {
  std::optional<BatteryReading> battery;
  std::uint32_t error = protocol::kSuccess;  // of the driver that did not answer; an empty slot is none
};

/// Reads the battery in a slot. There is none when the slot is empty, and when the battery leaves it during the
/// reading. A driver that does not answer what a battery is, is an error: nothing true could be said of it then. A
/// battery that takes the place of another one during the reading is read in its stead, once.
SlotReading ReadBattery(const ControlDevice& device);

}  // namespace zt::shared::battery
