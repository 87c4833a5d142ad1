#include "platform/posture_sensors.h"

#include <limits>
#include <optional>
#include <variant>

#include "platform/simulated/disturbed.h"
#include "simulation/calls.h"
#include "simulation/machine.h"
#include "simulation/waiting.h"

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

using simulation::HingeOutcome;

HingeReading::Outcome OutcomeOf(HingeOutcome outcome) {
  switch (outcome) {
    case HingeOutcome::kSensorTimeout:
      return HingeReading::Outcome::kSensorTimedOut;
    case HingeOutcome::kReadingTimeout:
      return HingeReading::Outcome::kReadingTimedOut;
    case HingeOutcome::kNoReading:
      return HingeReading::Outcome::kNoReading;
    case HingeOutcome::kReading:
      break;
  }
  return HingeReading::Outcome::kAngle;
}

// What a disturbed sensor gives; absent for one that is not.
std::optional<HingeReading> DisturbedHinge() {
  switch (simulation::Announce("HingeAngleSensor", {Disturbance::kFails, Disturbance::kNull, Disturbance::kEmpty,
                                                    Disturbance::kAbsurd, Disturbance::kEndlessRows})) {
    case Disturbance::kFails:
      return HingeReading{HingeReading::Outcome::kFailed, 0, kRefusedByCom};
    case Disturbance::kNull:
      return HingeReading{HingeReading::Outcome::kNoReading, 0, 0};
    case Disturbance::kEmpty:
      return HingeReading{};
    case Disturbance::kAbsurd:
      return HingeReading{HingeReading::Outcome::kAngle, std::numeric_limits<double>::max(), 0};
    case Disturbance::kEndlessRows:
      return HingeReading{HingeReading::Outcome::kReadingTimedOut, 0, 0};
    default:
      return std::nullopt;
  }
}

// For the sensor, or for its reading.
bool WaitsForHinge() {
  return simulation::WaitFor("Hinge sensor", kSensorWaitLimit);
}

}  // namespace

HingeReading ReadHingeAngle() {
  if (const std::optional<HingeReading> disturbed = DisturbedHinge()) return *disturbed;
  const simulation::Sensors& sensors = simulation::CurrentMachine().sensors;
  if (sensors.apartment) return {HingeReading::Outcome::kFailed, 0, sensors.apartment->status};
  if (!WaitsForHinge()) return {HingeReading::Outcome::kSensorTimedOut, 0, 0};
  if (!sensors.hinge) return {};
  if (!WaitsForHinge()) return {HingeReading::Outcome::kReadingTimedOut, 0, 0};
  return {OutcomeOf(sensors.hinge->outcome), sensors.hinge->angle_degrees, 0};
}

OrientationReading ReadOrientation() {
  const Disturbance met =
      simulation::Announce("SimpleOrientationSensor", {Disturbance::kFails, Disturbance::kEmpty, Disturbance::kAbsurd});
  if (met == Disturbance::kFails) return {OrientationReading::Outcome::kFailed, 0, kRefusedByCom};
  if (met == Disturbance::kEmpty) return {};
  if (met == Disturbance::kAbsurd)
    return {OrientationReading::Outcome::kOrientation, std::numeric_limits<std::int32_t>::min(), 0};
  const simulation::Sensors& sensors = simulation::CurrentMachine().sensors;
  if (sensors.apartment) return {OrientationReading::Outcome::kFailed, 0, sensors.apartment->status};
  if (!sensors.orientation) return {};
  if (const auto* failure = std::get_if<simulation::Failure>(&*sensors.orientation)) {
    return {OrientationReading::Outcome::kFailed, 0, failure->status};
  }
  return {OrientationReading::Outcome::kOrientation, std::get<std::int32_t>(*sensors.orientation), 0};
}

}  // namespace zt::telemetry::collector::performancesamples::platform
