#include "battery_reading.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "scripted_battery.h"

namespace zt::tests {
namespace {

using protocol::Level;
using shared::battery::BatteryReading;
using shared::battery::ReadBattery;
using shared::battery::SlotReading;

constexpr std::uint32_t kInvalidFunction = 1;
constexpr std::uint32_t kTimeout = 1460;

std::ptrdiff_t TimesAsked(const ScriptedBattery& battery, std::uint32_t code) {
  return std::count(battery.asked.begin(), battery.asked.end(), code);
}

TEST(BatteryReadingTest, TakesEverythingThatTheDriverAnswers) {
  const std::optional<BatteryReading> reading = ScriptedBattery().Read();
  ASSERT_TRUE(reading.has_value());
  EXPECT_EQ(reading->information.designed_capacity, 50'000U);
  EXPECT_EQ(reading->information.full_charged_capacity, 45'000U);
  EXPECT_EQ(reading->information.cycle_count, 123U);
  EXPECT_EQ(reading->status.power_state, protocol::kDischarging);
  EXPECT_EQ(reading->status.capacity, 30'000U);
  EXPECT_EQ(reading->status.voltage, 12'000U);
  EXPECT_EQ(reading->status.rate, -6'000);
  EXPECT_EQ(reading->temperature_tenth_kelvin, 2982U);
  EXPECT_EQ(reading->serial_number, "01234");
  EXPECT_EQ(reading->unique_id, "01234MakerRE03045XL");
  EXPECT_EQ(reading->device_name, "RE03045XL");
}

TEST(BatteryReadingTest, AsksForTheStatusWithoutWaitingForAChange) {
  ScriptedBattery battery;
  ASSERT_TRUE(battery.Read());
  EXPECT_EQ(battery.last_status_query.timeout, 0U);
}

TEST(BatteryReadingTest, AnEmptySlotIsAbsent) {
  ScriptedBattery battery;
  battery.tag = protocol::kNoTag;
  const SlotReading slot = battery.ReadSlot();
  EXPECT_FALSE(slot.battery);
  EXPECT_EQ(slot.error, protocol::kSuccess) << "that there is none is no failure";
  EXPECT_EQ(battery.asked.size(), 1U);
}

TEST(BatteryReadingTest, ATagOfZeroIsAnEmptySlotToo) {
  const auto answers_zero = [](std::uint32_t, std::span<const std::byte>, std::span<std::byte> output) {
    std::fill(output.begin(), output.end(), std::byte{0});
    return ControlOutcome{protocol::kSuccess, output.size()};
  };
  const SlotReading slot = ReadBattery(answers_zero);
  EXPECT_FALSE(slot.battery);
  EXPECT_EQ(slot.error, protocol::kSuccess);
}

TEST(BatteryReadingTest, ATagThatCannotBeAskedForIsAFailure) {
  ScriptedBattery battery;
  battery.failing_codes[protocol::kQueryTag] = kTimeout;
  const SlotReading slot = battery.ReadSlot();
  EXPECT_FALSE(slot.battery);
  EXPECT_EQ(slot.error, kTimeout);
}

TEST(BatteryReadingTest, ABatteryThatDoesNotTellWhatItIsIsAFailure) {
  ScriptedBattery battery;
  battery.failing_levels[Level::kInformation] = kInvalidFunction;
  const SlotReading slot = battery.ReadSlot();
  EXPECT_FALSE(slot.battery);
  EXPECT_EQ(slot.error, kInvalidFunction);
  EXPECT_EQ(TimesAsked(battery, protocol::kQueryTag), 1) << "a driver that does not answer is not asked again";
}

TEST(BatteryReadingTest, ABatteryThatDoesNotTellItsStateIsAFailure) {
  ScriptedBattery battery;
  battery.failing_codes[protocol::kQueryStatus] = kTimeout;
  const SlotReading slot = battery.ReadSlot();
  EXPECT_FALSE(slot.battery);
  EXPECT_EQ(slot.error, kTimeout);
}

TEST(BatteryReadingTest, AShortAnswerIsNoAnswer) {
  for (const std::uint32_t code : {protocol::kQueryTag, protocol::kQueryInformation, protocol::kQueryStatus}) {
    ScriptedBattery battery;
    battery.missing_bytes[code] = 1;
    const SlotReading slot = battery.ReadSlot();
    EXPECT_FALSE(slot.battery) << code;
    EXPECT_EQ(slot.error, protocol::kInvalidData) << code;
  }
}

TEST(BatteryReadingTest, ATemperatureThatTheDriverLacksIsAbsent) {
  ScriptedBattery battery;
  battery.temperature_tenth_kelvin.reset();
  const auto reading = battery.Read();
  ASSERT_TRUE(reading);
  EXPECT_EQ(reading->temperature_tenth_kelvin, std::nullopt);
}

TEST(BatteryReadingTest, TextsThatTheDriverLacksAreEmpty) {
  ScriptedBattery battery;
  battery.texts.clear();
  const auto reading = battery.Read();
  ASSERT_TRUE(reading);
  EXPECT_EQ(reading->serial_number, "");
  EXPECT_EQ(reading->unique_id, "");
  EXPECT_EQ(reading->device_name, "");
}

TEST(BatteryReadingTest, EachTextIsAskedForByItsOwnLevel) {
  for (const Level level : {Level::kSerialNumber, Level::kUniqueId, Level::kDeviceName}) {
    ScriptedBattery battery;
    battery.failing_levels[level] = kInvalidFunction;
    const auto reading = battery.Read();
    ASSERT_TRUE(reading);
    EXPECT_EQ(reading->serial_number.empty(), level == Level::kSerialNumber);
    EXPECT_EQ(reading->unique_id.empty(), level == Level::kUniqueId);
    EXPECT_EQ(reading->device_name.empty(), level == Level::kDeviceName);
  }
}

TEST(BatteryReadingTest, TextsLoseTheBlanksAroundThem) {
  ScriptedBattery battery;
  battery.texts[Level::kSerialNumber] = u"  01 234 \t\r\n";
  battery.texts[Level::kDeviceName] = u"   ";
  const auto reading = battery.Read();
  ASSERT_TRUE(reading);
  EXPECT_EQ(reading->serial_number, "01 234");
  EXPECT_EQ(reading->device_name, "");
}

TEST(BatteryReadingTest, TextsBecomeUtf8) {
  ScriptedBattery battery;
  battery.texts[Level::kSerialNumber] = u"\u00E4\u65E5\U0001F50B";
  const auto reading = battery.Read();
  ASSERT_TRUE(reading);
  EXPECT_EQ(reading->serial_number, "\xC3\xA4\xE6\x97\xA5\xF0\x9F\x94\x8B");
}

TEST(BatteryReadingTest, ATextThatDoesNotEndIsCutToTheRoomForIt) {
  ScriptedBattery battery;
  battery.texts[Level::kSerialNumber] = std::u16string(1'000, u'7');
  const auto reading = battery.Read();
  ASSERT_TRUE(reading);
  EXPECT_EQ(reading->serial_number, std::string(256, '7'));
}

TEST(BatteryReadingTest, ABatteryThatIsSwappedIsReadInTheOthersStead) {
  for (std::size_t answered = 1; answered <= 5; ++answered) {
    ScriptedBattery battery;
    battery.before_answer = [answered](ScriptedBattery& self) {
      if (self.asked.size() != answered) return;
      self.tag = 8;
      self.texts = {{Level::kSerialNumber, u"OTHER"}, {Level::kDeviceName, u"OTHER"}};
      self.information.cycle_count = 1;
    };
    const auto reading = battery.Read();
    ASSERT_TRUE(reading) << "swapped after " << answered << " answers";
    EXPECT_EQ(reading->serial_number, "OTHER");
    EXPECT_EQ(reading->unique_id, "") << "nothing of the first battery is left";
    EXPECT_EQ(reading->information.cycle_count, 1U);
    EXPECT_EQ(TimesAsked(battery, protocol::kQueryTag), 2);
  }
}

TEST(BatteryReadingTest, ABatteryThatIsTakenOutIsAbsent) {
  for (std::size_t answered = 1; answered <= 5; ++answered) {
    ScriptedBattery battery;
    battery.before_answer = [answered](ScriptedBattery& self) {
      if (self.asked.size() == answered) self.tag = protocol::kNoTag;
    };
    const SlotReading slot = battery.ReadSlot();
    EXPECT_EQ(slot.error, protocol::kSuccess);
    EXPECT_FALSE(slot.battery) << "taken out after " << answered << " answers";
  }
}

TEST(BatteryReadingTest, ATagThatNeverHoldsEndsAfterTheSecondAttempt) {
  ScriptedBattery battery;
  battery.before_answer = [](ScriptedBattery& self) { ++self.tag; };
  EXPECT_FALSE(battery.Read());
  EXPECT_EQ(TimesAsked(battery, protocol::kQueryTag), 2);
}

}  // namespace
}  // namespace zt::tests
