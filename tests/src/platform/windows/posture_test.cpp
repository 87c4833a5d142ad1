#include <gtest/gtest.h>

#include "messages/perf_messages.h"
#include "platform/posture_sensors.h"
#include "samplers/device_state_info_msg.h"
#include "support/windows/com_thread.h"
#include "support/wmi_namespace.h"
#include "zt/shared/wmi/wmi_client.h"
#include "zt/telemetry/common/error.h"

// The posture on this very system: one without sensors, as Wine and most machines are.
namespace zt::tests {
namespace {

using telemetry::collector::performancesamples::DeviceStateInfoMsg;
using telemetry::collector::performancesamples::PerfMessages;
using telemetry::collector::performancesamples::platform::HingeReading;
using telemetry::collector::performancesamples::platform::OrientationReading;
using telemetry::collector::performancesamples::platform::ReadHingeAngle;
using telemetry::collector::performancesamples::platform::ReadOrientation;
using telemetry::common::Error;

TEST(PostureSensorsTest, AreAbsentWhereTheSystemHasNone) {
  OnFreshThread([] {
    EXPECT_EQ(ReadHingeAngle().outcome, HingeReading::Outcome::kNoSensor);
    EXPECT_EQ(ReadOrientation().outcome, OrientationReading::Outcome::kNoSensor);
  });
}

TEST(PostureSensorsTest, LeaveAThreadWithoutComWithoutIt) {
  OnFreshThread([] {
    ReadHingeAngle();
    ReadOrientation();
    EXPECT_EQ(CurrentApartment(), std::nullopt);
  });
}

TEST(PostureSensorsTest, AreReadInAMultithreadedApartmentWhichStays) {
  OnThreadWithApartment(COINIT_MULTITHREADED, [] {
    EXPECT_EQ(ReadHingeAngle().outcome, HingeReading::Outcome::kNoSensor);
    EXPECT_EQ(ReadOrientation().outcome, OrientationReading::Outcome::kNoSensor);
    EXPECT_EQ(CurrentApartment(), APTTYPE_MTA);
  });
}

TEST(PostureSensorsTest, FailInASingleThreadedApartmentWhichStays) {
  OnThreadWithApartment(COINIT_APARTMENTTHREADED, [] {
    const std::optional<APTTYPE> before = CurrentApartment();
    EXPECT_EQ(ReadHingeAngle().outcome, HingeReading::Outcome::kFailed);
    EXPECT_EQ(ReadHingeAngle().status, RPC_E_CHANGED_MODE);
    EXPECT_EQ(ReadOrientation().outcome, OrientationReading::Outcome::kFailed);
    EXPECT_EQ(ReadOrientation().status, RPC_E_CHANGED_MODE);
    EXPECT_EQ(CurrentApartment(), before);
  });
}

TEST(PostureSensorsTest, CanBeReadAgainAndAgain) {
  OnFreshThread([] {
    for (int i = 0; i < 20; ++i) EXPECT_EQ(ReadHingeAngle().outcome, HingeReading::Outcome::kNoSensor);
    EXPECT_EQ(CurrentApartment(), std::nullopt);
  });
}

// What the keyboards of this system tell, worked out from all that WMI knows of them: the posture, or the text of the
// error where WMI cannot be asked for a class of devices, as under Wine.
std::string KeyboardsTell() {
  shared::wmi::WMIClient wmi(tests::kWmiNamespace);
  if (wmi.ExecQuery(L"SELECT * FROM Win32_PnPEntity WHERE PNPClass = 'Keyboard'") != 0) {
    return "Error while querying Win32_PnPEntity";
  }
  int keyboards = 0;
  int well = 0;
  for (; wmi.Next(); ++keyboards) {
    bool present = false;
    std::string status;
    wmi.GetValue(L"Present", present);
    wmi.GetValue(L"Status", status);
    if (present && status == "OK") ++well;
  }
  if (keyboards == 0) return "positionUnknown";
  return well == keyboards ? "positionClamshell" : "positionTablet";
}

// The posture text that `ask` gives, or the text of the error that it ends with.
template <typename Ask>
std::string TextOrFailure(const Ask& ask) {
  try {
    return ask();
  } catch (const Error& error) {
    EXPECT_EQ(error.kind, 5);
    EXPECT_NE(error.code, 0);
    return error.description;
  }
}

TEST(PostureTest, OfTheKeyboardsIsWhatWmiTellsOfThem) {
  shared::wmi::WMIClient wmi(tests::kWmiNamespace);
  DeviceStateInfoMsg sampler(&wmi);
  EXPECT_EQ(TextOrFailure([&] { return sampler.InferFromKeyboardStatus(); }), KeyboardsTell());
}

TEST(PostureTest, OfTheHingeIsMissingWithoutItsSensor) {
  shared::wmi::WMIClient wmi(tests::kWmiNamespace);
  DeviceStateInfoMsg sampler(&wmi);
  EXPECT_EQ(TextOrFailure([&] { return sampler.GetPosition(); }), "Invalid sensor. No hinge angle sensor available");
}

TEST(PostureTest, IsTheKeyboardsWithoutAHingeSensor) {
  PerfMessages::Init(nullptr, 50);
  shared::wmi::WMIClient wmi(tests::kWmiNamespace);
  DeviceStateInfoMsg sampler(&wmi);
  const std::string told = TextOrFailure([&] {
    sampler.PopulateStorageAndUploadProtos();
    return PerfMessages::amd_pmf_->device_mode();
  });
  EXPECT_EQ(told, KeyboardsTell());
  // Where the keyboards cannot be asked the records stay without a mode.
  const bool is_posture = told.starts_with("position");
  EXPECT_EQ(PerfMessages::static_cdm_->hw_info().has_device_state(), is_posture);
  EXPECT_EQ(PerfMessages::amd_pmf_->has_device_mode(), is_posture);
}

}  // namespace
}  // namespace zt::tests
