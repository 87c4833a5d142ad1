#pragma once

#include <vector>

#include "battery_figures.h"
#include "battery_reading.h"
#include "zt/shared/smbios/smbios_info.h"

namespace zt::shared::battery {

/// Whether the battery can power the machine for as long as its charge lasts: neither a UPS, which bridges minutes, nor
/// the battery of a mouse or a pen.
bool PowersTheMachine(const BatteryReading& reading);

/// The figures of a battery as its driver tells them. What the driver calls unknown, and figures in the driver's own
/// arbitrary units, are 0; ratios of such figures are kept. Design voltage, largest error and tracking number are not
/// the driver's to tell.
BatteryFigures FiguresOf(const BatteryReading& reading);

/// The figures of all batteries of the machine, with what the firmware's table adds to them: the structure with the
/// battery's serial number, else the first one with its device name, else the only one when there is one battery.
std::vector<BatteryFigures> FiguresOf(const std::vector<BatteryReading>& readings,
                                      const std::vector<smbios::TypePortableBattery>& firmware_batteries);

}  // namespace zt::shared::battery
