#pragma once

#include <chrono>
#include <cstdint>

/// The sensors that tell how a device is folded and held: those that its maker built in, as the Windows Runtime gives
/// them.
namespace zt::telemetry::collector::performancesamples::platform {

/// How long finding the hinge-angle sensor may take, and how long its reading.
inline constexpr std::chrono::milliseconds kSensorWaitLimit{1'000};

/// What became of reading the hinge-angle sensor.
struct HingeReading {
  enum class Outcome {
    kAngle,
    kNoSensor,         // also where the system does not know such sensors
    kSensorTimedOut,   // finding the sensor took too long
    kReadingTimedOut,  // the sensor's reading took too long
    kNoReading,        // the sensor has none
    kFailed,           // the Windows Runtime cannot be used on this thread, or a call failed
  };

  Outcome outcome = Outcome::kNoSensor;
  double angle_degrees = 0;  // kAngle; may be NaN
  std::int32_t status = 0;   // kFailed; the call's HRESULT
};

/// Reads the angle between the two parts of the device. Waits at most one second for the sensor and one for its
/// reading; what takes longer is cancelled. The Windows Runtime is initialised (multithreaded) for the call, and left
/// as it was; on a thread in a single-threaded apartment the reading fails: waiting would hold up what the apartment
/// serves.
HingeReading ReadHingeAngle();

/// What became of reading the simple orientation sensor.
struct OrientationReading {
  enum class Outcome { kOrientation, kNoSensor, kFailed };

  Outcome outcome = Outcome::kNoSensor;
  std::int32_t orientation = 0;  // kOrientation; as the platform numbers it: 0 upright, 1 to 3 turned, 4 face up,
                                 // 5 face down
  std::int32_t status = 0;       // kFailed; the call's HRESULT
};

/// Reads how the device is held. The Windows Runtime is used as in `ReadHingeAngle`.
OrientationReading ReadOrientation();

}  // namespace zt::telemetry::collector::performancesamples::platform
