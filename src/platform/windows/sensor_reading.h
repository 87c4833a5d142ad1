#pragma once

#include <chrono>

#include "platform/posture_sensors.h"
#include "platform/windows/async_result.h"
#include "platform/windows/sensor_interfaces.h"

namespace zt::telemetry::collector::performancesamples::platform {

/// Reads the default sensor; each of the two operations may take as long as `limit`.
HingeReading ReadHingeAngle(abi::IHingeAngleSensorStatics& sensors, std::chrono::milliseconds limit = kSensorWaitLimit);

OrientationReading ReadOrientation(abi::ISimpleOrientationSensorStatics& sensors);

}  // namespace zt::telemetry::collector::performancesamples::platform
