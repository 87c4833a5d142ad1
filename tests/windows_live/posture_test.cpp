#include <gtest/gtest.h>

#include "com_thread.h"
#include "messages/perf_messages.h"
#include "platform/posture_sensors.h"
#include "samplers/device_state_info_msg.h"
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

constexpr wchar_t kNamespace[] = LR"(\\.\root\cimv2)";

TEST(PostureSensors, AreAbsentWhereTheSystemHasNone) {
  OnFreshThread([] {
    EXPECT_EQ(ReadHingeAngle().outcome, HingeReading::Outcome::kNoSensor);
    EXPECT_EQ(ReadOrientation().outcome, OrientationReading::Outcome::kNoSensor);
  });
}

TEST(PostureSensors, LeaveAThreadWithoutComWithoutIt) {
  OnFreshThread([] {
    ReadHingeAngle();
    ReadOrientation();
    EXPECT_EQ(CurrentApartment(), std::nullopt);
  });
}

TEST(PostureSensors, AreReadInAMultithreadedApartmentWhichStays) {
  OnThreadWithApartment(COINIT_MULTITHREADED, [] {
    EXPECT_EQ(ReadHingeAngle().outcome, HingeReading::Outcome::kNoSensor);
    EXPECT_EQ(ReadOrientation().outcome, OrientationReading::Outcome::kNoSensor);
    EXPECT_EQ(CurrentApartment(), APTTYPE_MTA);
  });
}

TEST(PostureSensors, FailInASingleThreadedApartmentWhichStays) {
  OnThreadWithApartment(COINIT_APARTMENTTHREADED, [] {
    const std::optional<APTTYPE> before = CurrentApartment();
    EXPECT_EQ(ReadHingeAngle().outcome, HingeReading::Outcome::kFailed);
    EXPECT_EQ(ReadHingeAngle().status, RPC_E_CHANGED_MODE);
    EXPECT_EQ(ReadOrientation().outcome, OrientationReading::Outcome::kFailed);
    EXPECT_EQ(ReadOrientation().status, RPC_E_CHANGED_MODE);
    EXPECT_EQ(CurrentApartment(), before);
  });
}

TEST(PostureSensors, CanBeReadAgainAndAgain) {
  OnFreshThread([] {
    for (int i = 0; i < 20; ++i) EXPECT_EQ(ReadHingeAngle().outcome, HingeReading::Outcome::kNoSensor);
    EXPECT_EQ(CurrentApartment(), std::nullopt);
  });
}

// The keyboards as WMI tells them here: a posture text, or the failure of the query.
std::string InferredOrFailed(DeviceStateInfoMsg& sampler) {
  try {
    return sampler.InferFromKeyboardStatus();
  } catch (const Error& error) {
    EXPECT_NE(error.code, 0);
    return error.description;
  }
}

std::string ModeOrFailure(DeviceStateInfoMsg& sampler) {
  try {
    sampler.PopulateStorageAndUploadProtos();
  } catch (const Error& error) {
    EXPECT_FALSE(PerfMessages::static_cdm_->hw_info().has_device_state());
    return error.description;
  }
  EXPECT_EQ(PerfMessages::amd_pmf_->device_mode(), PerfMessages::static_cdm_->hw_info().device_state().device_mode());
  return PerfMessages::amd_pmf_->device_mode();
}

TEST(Posture, IsTheKeyboardsWithoutAHingeSensor) {
  PerfMessages::Init(nullptr, 50);
  shared::wmi::WMIClient wmi(kNamespace);
  DeviceStateInfoMsg sampler(&wmi);
  EXPECT_THROW(sampler.GetPosition(), Error);
  const std::string inferred = InferredOrFailed(sampler);
  EXPECT_TRUE(inferred == "positionTablet" || inferred == "positionClamshell" || inferred == "positionUnknown" ||
              inferred == "Error while querying Win32_PnPEntity")
      << inferred;
  EXPECT_EQ(ModeOrFailure(sampler), inferred);
}

}  // namespace
}  // namespace zt::tests
