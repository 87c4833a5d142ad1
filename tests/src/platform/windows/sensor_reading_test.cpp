#include "platform/windows/sensor_reading.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <optional>

#include "fake_sensors.h"
#include "support/status_codes.h"

// The reading of the sensors' interfaces, with objects of this process in the place of sensors that no machine here
// has.
namespace zt::tests {
namespace {

using std::chrono::milliseconds;
using telemetry::collector::performancesamples::platform::HingeReading;
using telemetry::collector::performancesamples::platform::OrientationReading;
using telemetry::collector::performancesamples::platform::ReadHingeAngle;
using telemetry::collector::performancesamples::platform::ReadOrientation;

constexpr milliseconds kLimit{100};
constexpr milliseconds kTooLong{60'000};

class SensorReadingTest : public testing::Test {
 protected:
  /// Reads the scripted hinge; every object that the reading was given must be gone afterwards.
  HingeReading ReadHinge() {
    HingeReading reading;
    {
      ComPtr<FakeHingeStatics> statics;
      *statics.ReleaseAndGetAddressOf() = new FakeHingeStatics(hinge_);
      const auto begin = std::chrono::steady_clock::now();
      reading = limit_ ? ReadHingeAngle(*statics.Get(), *limit_) : ReadHingeAngle(*statics.Get());
      took_ = std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - begin);
    }
    EXPECT_EQ(living_fakes, 0) << "something was not released, or released once too often";
    return reading;
  }

  OrientationReading ReadHeld() {
    OrientationReading reading;
    {
      ComPtr<FakeOrientationStatics> statics;
      *statics.ReleaseAndGetAddressOf() = new FakeOrientationStatics(orientation_);
      reading = ReadOrientation(*statics.Get());
    }
    EXPECT_EQ(living_fakes, 0) << "something was not released, or released once too often";
    return reading;
  }

  void ExpectHingeFails(HRESULT status) {
    const HingeReading reading = ReadHinge();
    EXPECT_EQ(reading.outcome, HingeReading::Outcome::kFailed);
    EXPECT_EQ(reading.status, status);
  }

  std::optional<milliseconds> limit_ = kLimit;  // absent: the collector's own
  HingeScript hinge_;
  OrientationScript orientation_;
  milliseconds took_{0};
};

TEST_F(SensorReadingTest, GivesTheAngle) {
  hinge_.angle = 110.25;
  const HingeReading reading = ReadHinge();
  EXPECT_EQ(reading.outcome, HingeReading::Outcome::kAngle);
  EXPECT_EQ(reading.angle_degrees, 110.25);
  EXPECT_EQ(hinge_.sensor.cancelled + hinge_.reading.cancelled, 0);
}

TEST_F(SensorReadingTest, GivesAnAngleThatIsNoNumber) {
  hinge_.angle = std::nan("");
  EXPECT_TRUE(std::isnan(ReadHinge().angle_degrees));
}

TEST_F(SensorReadingTest, WaitsForOperationsThatTakeAWhile) {
  hinge_.angle = 45;
  hinge_.sensor.duration = hinge_.reading.duration = milliseconds(30);
  EXPECT_EQ(ReadHinge().outcome, HingeReading::Outcome::kAngle);
  EXPECT_GE(took_, milliseconds(60));
}

TEST_F(SensorReadingTest, ADeviceWithoutTheSensorHasNone) {
  hinge_.has_sensor = false;
  EXPECT_EQ(ReadHinge().outcome, HingeReading::Outcome::kNoSensor);
}

TEST_F(SensorReadingTest, ASensorThatTakesTooLongIsCancelledAndLetGo) {
  hinge_.sensor.duration = kTooLong;
  EXPECT_EQ(ReadHinge().outcome, HingeReading::Outcome::kSensorTimedOut);
  EXPECT_EQ(hinge_.sensor.cancelled, 1);
  EXPECT_GE(took_, kLimit);
}

TEST_F(SensorReadingTest, AReadingThatTakesTooLongIsCancelledAndLetGo) {
  hinge_.reading.duration = kTooLong;
  EXPECT_EQ(ReadHinge().outcome, HingeReading::Outcome::kReadingTimedOut);
  EXPECT_EQ(hinge_.sensor.cancelled, 0);
  EXPECT_EQ(hinge_.reading.cancelled, 1);
}

// Neither is near the limit of a second, so that a busy machine tells them apart too.
constexpr milliseconds kHalfASecond{500};
constexpr milliseconds kHalfAMinute{30'000};

TEST_F(SensorReadingTest, TheCollectorWaitsForASensorForHalfASecond) {
  limit_.reset();
  hinge_.sensor.duration = hinge_.reading.duration = kHalfASecond;
  EXPECT_EQ(ReadHinge().outcome, HingeReading::Outcome::kAngle);
}

TEST_F(SensorReadingTest, TheCollectorDoesNotWaitForASensorForHalfAMinute) {
  limit_.reset();
  hinge_.sensor.duration = kHalfAMinute;
  EXPECT_EQ(ReadHinge().outcome, HingeReading::Outcome::kSensorTimedOut);
  hinge_.sensor.duration = milliseconds(0);
  hinge_.reading.duration = kHalfAMinute;
  EXPECT_EQ(ReadHinge().outcome, HingeReading::Outcome::kReadingTimedOut);
}

TEST_F(SensorReadingTest, ASensorWithoutAReadingHasNone) {
  hinge_.has_reading = false;
  EXPECT_EQ(ReadHinge().outcome, HingeReading::Outcome::kNoReading);
}

TEST_F(SensorReadingTest, EachCallOfEitherOperationCanFailAlone) {
  for (OperationScript HingeScript::*operation : {&HingeScript::sensor, &HingeScript::reading}) {
    for (HRESULT OperationScript::*call :
         {&OperationScript::start, &OperationScript::info, &OperationScript::state, &OperationScript::results}) {
      hinge_ = {};
      hinge_.*operation.*call = tests::kDeviceLost;
      ExpectHingeFails(tests::kDeviceLost);
    }
  }
}

TEST_F(SensorReadingTest, AnOperationThatEndsInAnErrorFailsWithIt) {
  for (OperationScript HingeScript::*operation : {&HingeScript::sensor, &HingeScript::reading}) {
    hinge_ = {};
    (hinge_.*operation).ends_as = abi::AsyncState::kError;
    (hinge_.*operation).error = tests::kDeviceLost;
    ExpectHingeFails(tests::kDeviceLost);
  }
}

TEST_F(SensorReadingTest, AnOperationThatSomebodyElseCancelsFails) {
  hinge_.reading.ends_as = abi::AsyncState::kCanceled;
  ExpectHingeFails(E_ABORT);
}

TEST_F(SensorReadingTest, AStartWithoutAnOperationFails) {
  hinge_.sensor.starts_with_null = true;
  ExpectHingeFails(E_POINTER);
}

TEST_F(SensorReadingTest, AnAngleThatCannotBeReadFails) {
  hinge_.get_angle = tests::kDeviceLost;
  ExpectHingeFails(tests::kDeviceLost);
}

TEST_F(SensorReadingTest, GivesTheOrientation) {
  for (INT32 orientation = 0; orientation <= 5; ++orientation) {
    orientation_.orientation = orientation;
    const OrientationReading reading = ReadHeld();
    EXPECT_EQ(reading.outcome, OrientationReading::Outcome::kOrientation);
    EXPECT_EQ(reading.orientation, orientation);
  }
}

TEST_F(SensorReadingTest, ADeviceWithoutTheOrientationSensorHasNone) {
  orientation_.has_sensor = false;
  EXPECT_EQ(ReadHeld().outcome, OrientationReading::Outcome::kNoSensor);
}

TEST_F(SensorReadingTest, EachCallOfTheOrientationCanFailAlone) {
  for (HRESULT OrientationScript::*call : {&OrientationScript::get_default, &OrientationScript::get_orientation}) {
    orientation_ = {};
    orientation_.*call = tests::kDeviceLost;
    const OrientationReading reading = ReadHeld();
    EXPECT_EQ(reading.outcome, OrientationReading::Outcome::kFailed);
    EXPECT_EQ(reading.status, tests::kDeviceLost);
  }
}

// Calls the operation at a place of an object's table, as the system's compiler numbers them: the first three are those
// of IUnknown, the next three those of IInspectable.
template <typename... Arguments>
HRESULT CallAt(std::size_t place, IUnknown& object, Arguments... arguments) {
  void** const table = *reinterpret_cast<void***>(&object);
  const auto operation = reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)(IUnknown*, Arguments...)>(table[place]);
  return operation(&object, arguments...);
}

TEST_F(SensorReadingTest, TheOperationsStandWhereTheSystemHasThem) {
  hinge_.angle = 12.5;
  hinge_.sensor.error = tests::kDeviceLost;
  orientation_.orientation = 3;
  {
    ComPtr<FakeHingeStatics> statics;
    *statics.ReleaseAndGetAddressOf() = new FakeHingeStatics(hinge_);
    ComPtr<IUnknown> finding, sensor, reading_it, reading, info;
    ASSERT_EQ(CallAt(7, *statics.Get(), finding.GetAddressOf()), S_OK);
    ASSERT_EQ(CallAt(8, *finding.Get(), sensor.GetAddressOf()), S_OK);
    ASSERT_EQ(CallAt(6, *sensor.Get(), reading_it.GetAddressOf()), S_OK);
    ASSERT_EQ(CallAt(8, *reading_it.Get(), reading.GetAddressOf()), S_OK);
    double angle = 0;
    ASSERT_EQ(CallAt(7, *reading.Get(), &angle), S_OK);
    EXPECT_EQ(angle, 12.5);

    ASSERT_EQ(finding->QueryInterface(abi::kAsyncInfoId, reinterpret_cast<void**>(info.GetAddressOf())), S_OK);
    INT32 state = 0;
    HRESULT error = S_OK;
    ASSERT_EQ(CallAt(7, *info.Get(), &state), S_OK);
    EXPECT_EQ(state, 1);
    ASSERT_EQ(CallAt(8, *info.Get(), &error), S_OK);
    EXPECT_EQ(error, tests::kDeviceLost);
    ASSERT_EQ(CallAt(9, *info.Get()), S_OK);
    EXPECT_EQ(hinge_.sensor.cancelled, 1);

    ComPtr<FakeOrientationStatics> orientation_statics;
    *orientation_statics.ReleaseAndGetAddressOf() = new FakeOrientationStatics(orientation_);
    ComPtr<IUnknown> orientation_sensor;
    ASSERT_EQ(CallAt(6, *orientation_statics.Get(), orientation_sensor.GetAddressOf()), S_OK);
    INT32 orientation = 0;
    ASSERT_EQ(CallAt(6, *orientation_sensor.Get(), &orientation), S_OK);
    EXPECT_EQ(orientation, 3);
  }
  EXPECT_EQ(living_fakes, 0);
}

}  // namespace
}  // namespace zt::tests
