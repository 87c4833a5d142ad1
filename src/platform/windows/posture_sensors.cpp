#include "platform/posture_sensors.h"

#include "platform/windows/sensor_interfaces.h"
#include "platform/windows/sensor_reading.h"
#include "platform/windows/windows_runtime.h"

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

// Reads a sensor through the statics of its class, by `read`. Reading (HingeReading, OrientationReading) says by itself
// that there is no sensor.
template <typename Reading, typename Statics, typename Read>
Reading ReadSensor(std::wstring_view class_name, const IID& statics_id, const Read& read) {
  const WindowsRuntime runtime;
  if (!runtime.IsThere()) return {};
  const base::ComApartment apartment = runtime.Enter();
  if (FAILED(apartment.Status())) return {Reading::Outcome::kFailed, {}, apartment.Status()};
  Microsoft::WRL::ComPtr<Statics> statics;
  const HRESULT found = runtime.FindStatics(class_name, statics_id, statics);
  if (FAILED(found)) return {Reading::Outcome::kFailed, {}, found};
  return statics.Get() != nullptr ? read(*statics.Get()) : Reading{};
}

}  // namespace

HingeReading ReadHingeAngle() {
  return ReadSensor<HingeReading, abi::IHingeAngleSensorStatics>(
      abi::kHingeAngleSensor, abi::kHingeAngleSensorStaticsId,
      [](abi::IHingeAngleSensorStatics& sensors) { return ReadHingeAngle(sensors); });
}

OrientationReading ReadOrientation() {
  return ReadSensor<OrientationReading, abi::ISimpleOrientationSensorStatics>(
      abi::kSimpleOrientationSensor, abi::kSimpleOrientationSensorStaticsId,
      [](abi::ISimpleOrientationSensorStatics& sensors) { return ReadOrientation(sensors); });
}

}  // namespace zt::telemetry::collector::performancesamples::platform
