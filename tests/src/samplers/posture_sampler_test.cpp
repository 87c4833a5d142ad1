#include <cmath>
#include <limits>
#include <typeinfo>

#include "samplers/device_state_info_msg.h"
#include "support/collector_fixture.h"
#include "support/sampler_test.h"
#include "support/status_codes.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using simulation::HingeOutcome;

constexpr char kKeyboardsQuery[] = "SELECT Present, Status FROM Win32_PnPEntity WHERE PNPClass='Keyboard'";
constexpr std::int32_t kUpright = 0;
constexpr std::int32_t kFaceUp = 4;
constexpr std::int32_t kFaceDown = 5;

class PostureSamplerTest : public SamplerTest {
 protected:
  PostureSamplerTest() { AddKeyboard(true, "OK"); }

  void AddKeyboard(bool present, const std::string& status) {
    Keyboards().push_back({{"PNPClass", "Keyboard"}, {"Present", present}, {"Status", status}});
  }
  std::vector<simulation::WmiRow>& Keyboards() { return machine_.wmi.classes["Win32_PnPEntity"]; }
  void FailKeyboards() { machine_.wmi.failures = {{"Win32_PnPEntity", tests::kInvalidClass, std::nullopt, 0}}; }
  void SetAngle(double degrees) { machine_.sensors.hinge = simulation::Hinge{HingeOutcome::kReading, degrees}; }
  void SetOutcome(HingeOutcome outcome) { machine_.sensors.hinge = simulation::Hinge{outcome, 0}; }

  /// What `ask` gives of a sampler on the machine.
  template <typename Ask>
  std::string Answer(const Ask& ask) {
    UseMachine();
    DeviceStateInfoMsg sampler(&wmi_);
    return ask(sampler);
  }

  std::string Evaluate(double degrees) {
    return Answer([degrees](DeviceStateInfoMsg& sampler) { return sampler.EvaluateAngle(degrees); });
  }
  std::string Position() {
    return Answer([](DeviceStateInfoMsg& sampler) { return sampler.GetPosition(); });
  }
  std::string Infer() {
    return Answer([](DeviceStateInfoMsg& sampler) { return sampler.InferFromKeyboardStatus(); });
  }
  /// The device mode of the shared record after a pass.
  std::string Sample() {
    return Answer([](DeviceStateInfoMsg& sampler) {
      sampler.PopulateStorageAndUploadProtos();
      return Hardware().device_state().device_mode();
    });
  }
};

struct AngleCase {
  double angle;
  const char* posture;
};

TEST_F(PostureSamplerTest, EveryAngleBelongsToOneBand) {
  machine_.sensors.orientation = kUpright;
  const AngleCase cases[] = {
      {0.001, "positionClamshell"},
      {44.999, "positionClamshell"},
      {std::nextafter(45.0, 0.0), "positionClamshell"},
      {45.0, "positionPullForward"},
      {134.999, "positionPullForward"},
      {std::nextafter(135.0, 0.0), "positionPullForward"},
      {135.0, "positionBook"},
      {179.89, "positionBook"},
      {std::nextafter(179.9, 0.0), "positionBook"},
      {179.9, "positionFlat"},
      {180.0, "positionFlat"},
      {180.1, "positionFlat"},
      {std::nextafter(180.1, 360.0), "positionTent"},
      {180.11, "positionTent"},
      {268.999, "positionTent"},
      {269.0, "positionStand"},
      {314.999, "positionStand"},
      {315.0, "positionPresentation"},
      {360.0, "positionPresentation"},
      {1e300, "positionPresentation"},
      {std::numeric_limits<double>::infinity(), "positionPresentation"},
  };
  for (const AngleCase& each : cases) EXPECT_EQ(Evaluate(each.angle), each.posture) << each.angle;
}

TEST_F(PostureSamplerTest, AnAngleThatTellsThePostureNeedsNoOrientation) {
  machine_.sensors.orientation = simulation::Failure{tests::kDeviceLost};
  for (const double angle : {45.0, 135.0, 180.0, 200.0, 300.0}) EXPECT_NE(Evaluate(angle), "Invalid");
}

TEST_F(PostureSamplerTest, ANearlyClosedDeviceHasItsLidClosedOnlyFaceDown) {
  for (std::int32_t orientation = 0; orientation <= 5; ++orientation) {
    machine_.sensors.orientation = orientation;
    EXPECT_EQ(Evaluate(10), orientation == kFaceDown ? "positionLidClosed" : "positionClamshell");
  }
}

TEST_F(PostureSamplerTest, AnAngleOfZeroIsAClosedDevice) {
  machine_.sensors.orientation = kFaceDown;
  EXPECT_EQ(Evaluate(0.0), "positionLidClosed");
  EXPECT_EQ(Evaluate(-0.0), "positionLidClosed");
}

TEST_F(PostureSamplerTest, ADeviceFoldedBackIsATabletOnlyFaceUp) {
  for (std::int32_t orientation = 0; orientation <= 5; ++orientation) {
    machine_.sensors.orientation = orientation;
    EXPECT_EQ(Evaluate(350), orientation == kFaceUp ? "positionTablet" : "positionPresentation");
  }
}

TEST_F(PostureSamplerTest, WithoutAnOrientationSensorTheModeIsInvalid) {
  EXPECT_EQ(Evaluate(44.999), "Invalid");
  EXPECT_EQ(Evaluate(315.0), "Invalid");
}

TEST_F(PostureSamplerTest, AnOrientationThatCannotBeReadIsAnError) {
  machine_.sensors.orientation = simulation::Failure{tests::kDeviceLost};
  for (const double angle : {10.0, 350.0}) {
    const Error error = FailureOf([&] { Evaluate(angle); });
    EXPECT_EQ(error.kind, 5);
    EXPECT_EQ(error.code, tests::kDeviceLost);
    EXPECT_EQ(error.description, "Error while reading the orientation sensor");
  }
}

TEST_F(PostureSamplerTest, AnAngleThatIsNoneAsksTheKeyboards) {
  for (const double angle : {-1.0, -1e-300, -std::numeric_limits<double>::infinity(), std::nan("")}) {
    EXPECT_EQ(Evaluate(angle), "positionClamshell") << angle;
    EXPECT_THAT(simulation::RecordedQueries(), testing::ElementsAre(kKeyboardsQuery));
  }
}

TEST_F(PostureSamplerTest, ThePositionIsTheReadingsAngle) {
  SetAngle(110);
  EXPECT_EQ(Position(), "positionPullForward");
  EXPECT_THAT(simulation::RecordedQueries(), testing::IsEmpty());
}

struct HingeFailureCase {
  std::optional<HingeOutcome> outcome;
  const char* text;
};

TEST_F(PostureSamplerTest, EachWayOfNotTellingTheAngleHasItsText) {
  const HingeFailureCase cases[] = {
      {HingeOutcome::kSensorTimeout, "Hinge Angle read timed out while getting sensor task"},
      {std::nullopt, "Invalid sensor. No hinge angle sensor available"},
      {HingeOutcome::kReadingTimeout, "Timed out while reading angle sensor."},
      {HingeOutcome::kNoReading, "Invalid reading. No hinge angle reading available."},
  };
  for (const HingeFailureCase& each : cases) {
    machine_.sensors.hinge.reset();
    if (each.outcome) SetOutcome(*each.outcome);
    const Error error = FailureOf([&] { Position(); });
    EXPECT_EQ(error, Error(5, -1, each.text, typeid(DeviceStateInfoMsg).name(), ""));
  }
}

TEST_F(PostureSamplerTest, AFailedInitialisationIsAnErrorWithItsStatus) {
  SetAngle(110);
  machine_.sensors.apartment = simulation::Failure{tests::kChangedMode};
  const Error error = FailureOf([&] { Position(); });
  EXPECT_EQ(error.kind, 5);
  EXPECT_EQ(error.code, tests::kChangedMode);
  EXPECT_EQ(error.description, "Error while reading the hinge angle sensor");
}

TEST_F(PostureSamplerTest, KeyboardsThatAreAllWellMakeAClamshell) {
  AddKeyboard(true, "OK");
  EXPECT_EQ(Infer(), "positionClamshell");
}

TEST_F(PostureSamplerTest, TheStatusMayBeInLowerCase) {
  Keyboards().clear();
  AddKeyboard(true, "ok");
  AddKeyboard(true, "oK");
  EXPECT_EQ(Infer(), "positionClamshell");
}

TEST_F(PostureSamplerTest, AnyOtherStatusMakesATablet) {
  for (const char* status : {"Error", "OK ", "OKAY", "O", "", "Unknown", "OK~", "\xC3\x96K"}) {
    Keyboards().clear();
    AddKeyboard(true, status);
    EXPECT_EQ(Infer(), "positionTablet") << status;
  }
}

TEST_F(PostureSamplerTest, ADetachedKeyboardMakesATablet) {
  AddKeyboard(false, "OK");
  EXPECT_EQ(Infer(), "positionTablet");
}

TEST_F(PostureSamplerTest, OneKeyboardThatIsNotWellIsEnoughWhereverItStands) {
  AddKeyboard(true, "Error");
  AddKeyboard(true, "OK");
  EXPECT_EQ(Infer(), "positionTablet");
}

TEST_F(PostureSamplerTest, APropertyThatCannotBeReadMakesATablet) {
  Keyboards() = {{{"PNPClass", "Keyboard"}, {"Present", true}, {"Status", "OK"}},
                 {{"PNPClass", "Keyboard"}, {"Present", true}}};
  EXPECT_EQ(Infer(), "positionTablet");
  Keyboards() = {{{"PNPClass", "Keyboard"}, {"Present", true}, {"Status", "OK"}},
                 {{"PNPClass", "Keyboard"}, {"Status", "OK"}}};
  EXPECT_EQ(Infer(), "positionTablet");
}

TEST_F(PostureSamplerTest, WithoutKeyboardsThePositionIsUnknown) {
  Keyboards().clear();
  EXPECT_EQ(Infer(), "positionUnknown");
}

TEST_F(PostureSamplerTest, OtherDevicesAreNoKeyboards) {
  Keyboards() = {{{"PNPClass", "Mouse"}, {"Present", false}, {"Status", "Error"}}};
  EXPECT_EQ(Infer(), "positionUnknown");
}

TEST_F(PostureSamplerTest, AFailedQueryIsAnErrorThatNamesItsSource) {
  FailKeyboards();
  const Error error = FailureOf([&] { Infer(); });
  EXPECT_EQ(error,
            Error(5, tests::kInvalidClass, "Error while querying Win32_PnPEntity",
                  "zt::telemetry::collector::performancesamples::DeviceStateInfoMsg::InferFromKeyboardStatus", ""));
}

TEST_F(PostureSamplerTest, TheModeStandsInBothRecords) {
  SetAngle(200);
  EXPECT_EQ(Sample(), "positionTent");
  EXPECT_EQ(PerfMessages::amd_pmf_->device_mode(), "positionTent");
  EXPECT_THAT(simulation::RecordedQueries(), testing::IsEmpty());
}

TEST_F(PostureSamplerTest, AnInvalidModeIsReportedAsItIs) {
  SetAngle(10);
  EXPECT_EQ(Sample(), "Invalid");
  EXPECT_EQ(PerfMessages::amd_pmf_->device_mode(), "Invalid");
}

TEST_F(PostureSamplerTest, TheKeyboardsDecideWhateverKeepsTheSensorFromTelling) {
  const std::optional<HingeOutcome> outcomes[] = {HingeOutcome::kSensorTimeout, std::nullopt,
                                                  HingeOutcome::kReadingTimeout, HingeOutcome::kNoReading};
  for (const std::optional<HingeOutcome>& outcome : outcomes) {
    machine_.sensors.hinge.reset();
    if (outcome) SetOutcome(*outcome);
    EXPECT_EQ(Sample(), "positionClamshell");
    EXPECT_EQ(PerfMessages::amd_pmf_->device_mode(), "positionClamshell");
    EXPECT_THAT(simulation::RecordedQueries(), testing::ElementsAre(kKeyboardsQuery));
  }
}

TEST_F(PostureSamplerTest, TheKeyboardsDecideWithoutTheWindowsRuntime) {
  SetAngle(110);
  machine_.sensors.apartment = simulation::Failure{tests::kChangedMode};
  EXPECT_EQ(Sample(), "positionClamshell");
}

TEST_F(PostureSamplerTest, TheKeyboardsDecideWhenTheOrientationFails) {
  SetAngle(10);
  machine_.sensors.orientation = simulation::Failure{tests::kDeviceLost};
  AddKeyboard(false, "OK");
  EXPECT_EQ(Sample(), "positionTablet");
}

TEST_F(PostureSamplerTest, AnAngleThatIsNoneAsksTheKeyboardsOnce) {
  SetAngle(-1);
  EXPECT_EQ(Sample(), "positionClamshell");
  EXPECT_EQ(simulation::RecordedQueries().size(), 1U);
}

TEST_F(PostureSamplerTest, KeyboardsThatFailEndThePassAndLeaveTheRecords) {
  FailKeyboards();
  EXPECT_EQ(FailureOf([&] { Sample(); }).description, "Error while querying Win32_PnPEntity");
  EXPECT_FALSE(PerfMessages::static_cdm_->has_hw_info());
  EXPECT_FALSE(PerfMessages::amd_pmf_->has_device_mode());
  EXPECT_EQ(simulation::RecordedQueries().size(), 1U);
}

TEST_F(PostureSamplerTest, KeyboardsThatFailForAnAngleThatIsNoneAreAskedAgain) {
  SetAngle(std::nan(""));
  machine_.wmi.failures = {{"Win32_PnPEntity", tests::kInvalidClass, 1U, 0}};
  EXPECT_EQ(Sample(), "positionClamshell");
  EXPECT_THAT(simulation::RecordedQueries(), testing::ElementsAre(kKeyboardsQuery, kKeyboardsQuery));
}

TEST_F(PostureSamplerTest, ALaterPassOverwritesTheMode) {
  SetAngle(200);
  Sample();
  SetAngle(110);
  EXPECT_EQ(Sample(), "positionPullForward");
  EXPECT_EQ(PerfMessages::amd_pmf_->device_mode(), "positionPullForward");
}

TEST_F(PostureSamplerTest, ACopyOfAnotherBuilderUsesItsClient) {
  const std::string mode = Answer([](DeviceStateInfoMsg& sampler) {
    const PerfMessages& base = sampler;
    return DeviceStateInfoMsg(base).InferFromKeyboardStatus();
  });
  EXPECT_EQ(mode, "positionClamshell");
}

class PostureCycleTest : public CollectorTest {};

TEST_F(PostureCycleTest, AFailedPostureIsOneErrorLineAndTheRecordIsStillSent) {
  simulation::Machine machine;
  machine.wmi.failures = {{"Win32_PnPEntity", tests::kInvalidClass, std::nullopt, 0}};
  simulation::UseMachine(machine);
  Execute(50);
  EXPECT_THAT(log_.Messages(plog::error),
              testing::Contains("Error handling message. Details: Error while querying Win32_PnPEntity").Times(1));
  EXPECT_FALSE(OnlySent().hw_info().has_device_state());
}

TEST_F(PostureCycleTest, ThePostureComesWithTheCyclesRecords) {
  simulation::Machine machine;
  machine.sensors.hinge = simulation::Hinge{HingeOutcome::kReading, 110};
  simulation::UseMachine(machine);
  Execute(50);
  EXPECT_EQ(OnlySent().hw_info().device_state().device_mode(), "positionPullForward");
  ASSERT_EQ(sink_->stored.size(), 1U);
  EXPECT_EQ(sink_->stored[0].device_mode(), "positionPullForward");
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples
