#include "samplers/device_state_info_msg.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <typeinfo>

#include "messages/record_parts.h"
#include "platform/posture_sensors.h"
#include "samplers/own_condition.h"
#include "samplers/wmi_query.h"
#include "zt/telemetry/common/error.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using common::Error;
using platform::HingeReading;
using platform::OrientationReading;

constexpr char kUnknownPosture[] = "positionUnknown";
constexpr char kClamshell[] = "positionClamshell";
constexpr char kTablet[] = "positionTablet";
constexpr char kNoOrientationSensor[] = "Invalid";

constexpr std::int32_t kNoOrientation = -1;
constexpr std::int32_t kFaceUp = 4;
constexpr std::int32_t kFaceDown = 5;

// The postures from one angle up to another. Where the angle alone does not tell them apart, the device lies in
// `orientation` or not.
struct Band {
  double end;
  bool includes_end;
  const char* posture;
  std::int32_t orientation = kNoOrientation;
  const char* posture_otherwise = nullptr;
};

// From 0 degrees on. Only the narrow band of a flat device includes its end, so that 180.1 is as flat as 179.9.
constexpr std::array<Band, 7> kBands = {{
    {45.0, false, "positionLidClosed", kFaceDown, kClamshell},
    {135.0, false, "positionPullForward"},
    {179.9, false, "positionBook"},
    {180.1, true, "positionFlat"},
    {269.0, false, "positionTent"},
    {315.0, false, "positionStand"},
    {std::numeric_limits<double>::infinity(), true, kTablet, kFaceUp, "positionPresentation"},
}};

constexpr char kSensorTimedOut[] = "Hinge Angle read timed out while getting sensor task";
constexpr char kNoSensor[] = "Invalid sensor. No hinge angle sensor available";
constexpr char kReadingTimedOut[] = "Timed out while reading angle sensor.";
constexpr char kNoReading[] = "Invalid reading. No hinge angle reading available.";
constexpr char kHingeFailed[] = "Error while reading the hinge angle sensor";
constexpr char kOrientationFailed[] = "Error while reading the orientation sensor";

constexpr wchar_t kKeyboardsQuery[] = L"SELECT Present, Status FROM Win32_PnPEntity WHERE PNPClass='Keyboard'";
constexpr char kKeyboardsFailed[] = "Error while querying Win32_PnPEntity";
constexpr char kKeyboardsSource[] =
    "zt::telemetry::collector::performancesamples::DeviceStateInfoMsg::InferFromKeyboardStatus";
constexpr char kWell[] = "OK";

const Band& BandOf(double angle_degrees) {
  return *std::find_if(kBands.begin(), kBands.end(), [angle_degrees](const Band& band) {
    return angle_degrees < band.end || (band.includes_end && angle_degrees == band.end);
  });
}

// ASCII alone: no other letter turns into one of "OK".
std::string ToUpperCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
  });
  return text;
}

// A property that cannot be read counts as a keyboard that is not there.
bool IsKeyboardWell(const shared::wmi::WMIClient& keyboard) {
  bool present = false;
  std::string status;
  keyboard.GetValue(L"Present", present);
  keyboard.GetValue(L"Status", status);
  return present && ToUpperCase(status) == kWell;
}

}  // namespace

DeviceStateInfoMsg::DeviceStateInfoMsg(const PerfMessages& other) : PerfMessages(other) {}

DeviceStateInfoMsg::DeviceStateInfoMsg(shared::wmi::WMIClient* wmi_client) : PerfMessages(wmi_client) {}

std::string DeviceStateInfoMsg::GetPosition() {
  const auto failure = [this](std::int64_t code, const char* text) {
    return Error(Error::kCallFailed, code, text, typeid(*this).name(), "");
  };
  const HingeReading hinge = platform::ReadHingeAngle();
  switch (hinge.outcome) {  // coverage: there is no other outcome
    case HingeReading::Outcome::kSensorTimedOut:
      throw failure(kOwnCondition, kSensorTimedOut);
    case HingeReading::Outcome::kNoSensor:
      throw failure(kOwnCondition, kNoSensor);
    case HingeReading::Outcome::kReadingTimedOut:
      throw failure(kOwnCondition, kReadingTimedOut);
    case HingeReading::Outcome::kNoReading:
      throw failure(kOwnCondition, kNoReading);
    case HingeReading::Outcome::kFailed:
      throw failure(hinge.status, kHingeFailed);
    case HingeReading::Outcome::kAngle:
      break;
  }
  return EvaluateAngle(hinge.angle_degrees);
}

std::string DeviceStateInfoMsg::EvaluateAngle(double angle_degrees) {
  if (!(angle_degrees >= 0)) return InferFromKeyboardStatus();  // negative or NaN
  const Band& band = BandOf(angle_degrees);
  if (band.orientation == kNoOrientation) return band.posture;
  const OrientationReading held = platform::ReadOrientation();
  if (held.outcome == OrientationReading::Outcome::kNoSensor) return kNoOrientationSensor;
  if (held.outcome == OrientationReading::Outcome::kFailed) {
    throw Error(Error::kCallFailed, held.status, kOrientationFailed, typeid(*this).name(), "");
  }
  return held.orientation == band.orientation ? band.posture : band.posture_otherwise;
}

std::string DeviceStateInfoMsg::InferFromKeyboardStatus() {
  const std::int32_t status = RunQuery(wmi_client_, kKeyboardsQuery);
  if (status != shared::wmi::kSuccess) {
    throw Error(Error::kCallFailed, status, kKeyboardsFailed, kKeyboardsSource, "");
  }
  std::string posture = kUnknownPosture;
  while (wmi_client_->Next()) {
    if (!IsKeyboardWell(*wmi_client_)) return kTablet;
    posture = kClamshell;
  }
  return posture;
}

void DeviceStateInfoMsg::PopulateStorageAndUploadProtos() {
  std::string posture;
  try {
    posture = GetPosition();
  } catch (...) {
    // Whatever keeps the sensors from telling, the keyboards may.
    posture = InferFromKeyboardStatus();
  }
  using Hardware = contract::upload::log::PcLogPerformanceSamplesAsCDM_HwInfo;
  auto& section =
      OpenSection(OpenHardware(*static_cdm_), &Hardware::mutable_device_state, &Hardware::clear_device_state);
  section.set_device_mode(posture);
  amd_pmf_->set_device_mode(posture);
}

}  // namespace zt::telemetry::collector::performancesamples
