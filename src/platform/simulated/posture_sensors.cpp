#include "platform/posture_sensors.h"

#include <variant>

#include "simulation/machine.h"

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

}  // namespace

HingeReading ReadHingeAngle() {
  const simulation::Sensors& sensors = simulation::CurrentMachine().sensors;
  if (sensors.apartment) return {HingeReading::Outcome::kFailed, 0, sensors.apartment->status};
  if (!sensors.hinge) return {};
  return {OutcomeOf(sensors.hinge->outcome), sensors.hinge->angle_degrees, 0};
}

OrientationReading ReadOrientation() {
  using Outcome = OrientationReading::Outcome;
  const simulation::Sensors& sensors = simulation::CurrentMachine().sensors;
  if (sensors.apartment) return {Outcome::kFailed, 0, sensors.apartment->status};
  if (!sensors.orientation) return {};
  if (const auto* failure = std::get_if<simulation::Failure>(&*sensors.orientation)) {
    return {Outcome::kFailed, 0, failure->status};
  }
  return {Outcome::kOrientation, std::get<std::int32_t>(*sensors.orientation), 0};
}

}  // namespace zt::telemetry::collector::performancesamples::platform
