#include "platform/windows/sensor_reading.h"

#include "base/time_limit.h"

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

using Microsoft::WRL::ComPtr;

}  // namespace

HingeReading ReadHingeAngle(abi::IHingeAngleSensorStatics& sensors, std::chrono::milliseconds limit) {
  using Outcome = HingeReading::Outcome;
  ComPtr<abi::IHingeAngleSensor> sensor;
  HRESULT status = Await([&](auto** operation) { return sensors.GetDefaultAsync(operation); }, limit, sensor);
  if (status == base::kTimedOut) return {Outcome::kSensorTimedOut};
  if (FAILED(status)) return {Outcome::kFailed, 0, status};
  if (sensor.Get() == nullptr) return {Outcome::kNoSensor};

  ComPtr<abi::IHingeAngleReading> reading;
  status = Await([&](auto** operation) { return sensor->GetCurrentReadingAsync(operation); }, limit, reading);
  if (status == base::kTimedOut) return {Outcome::kReadingTimedOut};
  if (FAILED(status)) return {Outcome::kFailed, 0, status};
  if (reading.Get() == nullptr) return {Outcome::kNoReading};

  double angle = 0;
  status = reading->get_AngleInDegrees(&angle);
  if (FAILED(status)) return {Outcome::kFailed, 0, status};
  return {Outcome::kAngle, angle};
}

OrientationReading ReadOrientation(abi::ISimpleOrientationSensorStatics& sensors) {
  using Outcome = OrientationReading::Outcome;
  ComPtr<abi::ISimpleOrientationSensor> sensor;
  HRESULT status = sensors.GetDefault(sensor.GetAddressOf());
  if (FAILED(status)) return {Outcome::kFailed, 0, status};
  if (sensor.Get() == nullptr) return {Outcome::kNoSensor};
  INT32 orientation = 0;
  status = sensor->GetCurrentOrientation(&orientation);
  if (FAILED(status)) return {Outcome::kFailed, 0, status};
  return {Outcome::kOrientation, orientation};
}

}  // namespace zt::telemetry::collector::performancesamples::platform
