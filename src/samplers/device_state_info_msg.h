#pragma once

#include <string>

#include "messages/perf_messages.h"

namespace zt::telemetry::collector::performancesamples {

/// Reports the posture of the device as one text ("positionClamshell", "positionTablet" and the like): from the hinge
/// angle where the device tells it, else from the state of its keyboards.
class ZT_COLLECTOR_EXPORT DeviceStateInfoMsg : public PerfMessages {
 public:
  explicit DeviceStateInfoMsg(const PerfMessages& other);
  explicit DeviceStateInfoMsg(shared::wmi::WMIClient* wmi_client);

  /// Sets the posture in the device state and in the platform-management record. Throws `Error` when neither the
  /// sensors nor the keyboards tell it; the records are then left as they were.
  void PopulateStorageAndUploadProtos() override;

  /// The posture that the hinge-angle sensor tells. Throws `Error` (kind 5) when the sensor does not tell its angle:
  /// code -1 without a sensor or a reading and when either takes more than a second, else the failed call's status.
  std::string GetPosition();

  /// The posture at an angle between the device's two parts, 0 (closed) to 360 degrees; the keyboards' for an angle
  /// that is negative or NaN. Throws `Error` (kind 5) when the orientation is needed and its sensor fails.
  std::string EvaluateAngle(double angle_degrees);

  /// The posture that the keyboards tell, from WMI: a tablet when one is detached or not well. Throws `Error` (kind 5,
  /// the query's status as code) when the query fails.
  std::string InferFromKeyboardStatus();
};

}  // namespace zt::telemetry::collector::performancesamples
