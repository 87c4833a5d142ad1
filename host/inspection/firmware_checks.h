#pragma once

#include <span>

#include "host/inspection/check.h"

namespace zt::telemetry::host::inspection {

/// What the collector asks of the firmware for whatever needs it: the serial number and the temperatures.
std::span<const Check> FirmwareChecks();

}  // namespace zt::telemetry::host::inspection
