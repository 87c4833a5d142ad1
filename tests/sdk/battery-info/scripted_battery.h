#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "battery_reading.h"

namespace zt::tests {

using shared::battery::ControlOutcome;
namespace protocol = shared::battery::protocol;

/// A battery device that answers as its driver would: a tag for the battery in its slot, and what that battery is asked
/// by its tag. Any one request can be made to fail.
class ScriptedBattery {
 public:
  ScriptedBattery() {
    information.capabilities = protocol::kSystemBattery;
    information.designed_capacity = 50'000;
    information.full_charged_capacity = 45'000;
    information.cycle_count = 123;
    status.power_state = protocol::kDischarging;
    status.capacity = 30'000;
    status.voltage = 12'000;
    status.rate = -6'000;
    texts = {{protocol::Level::kSerialNumber, u"01234"},
             {protocol::Level::kUniqueId, u"01234MakerRE03045XL"},
             {protocol::Level::kDeviceName, u"RE03045XL"}};
  }

  std::optional<shared::battery::BatteryReading> Read() { return ReadSlot().battery; }

  shared::battery::SlotReading ReadSlot() {
    return shared::battery::ReadBattery([this](std::uint32_t code, std::span<const std::byte> input,
                                               std::span<std::byte> output) { return Answer(code, input, output); });
  }

  std::uint32_t tag = 7;
  protocol::Information information;
  protocol::Status status;
  std::map<protocol::Level, std::u16string> texts;
  std::optional<std::uint32_t> temperature_tenth_kelvin = 2982;

  /// Errors by request code or level; by code, the bytes that answers are short of. A level that fails leaves rubbish.
  std::map<std::uint32_t, std::uint32_t> failing_codes;
  std::map<protocol::Level, std::uint32_t> failing_levels;
  std::map<std::uint32_t, std::size_t> missing_bytes;
  /// Runs before each request is answered; given what was asked before.
  std::function<void(ScriptedBattery&)> before_answer;

  std::vector<std::uint32_t> asked;
  protocol::StatusQuery last_status_query;

 private:
  ControlOutcome Answer(std::uint32_t code, std::span<const std::byte> input, std::span<std::byte> output) {
    if (before_answer) before_answer(*this);
    asked.push_back(code);
    if (failing_codes.contains(code)) return {failing_codes[code], 0};
    if (code == protocol::kQueryTag) return AnswerTag(input, output);
    if (code == protocol::kQueryStatus) return AnswerStatus(input, output);
    return AnswerInformation(input, output);
  }

  ControlOutcome AnswerTag(std::span<const std::byte> input, std::span<std::byte> output) {
    if (input.size() != sizeof(std::uint32_t)) return {kInvalidParameter, 0};
    if (tag == protocol::kNoTag) return {protocol::kFileNotFound, 0};
    return Put(&tag, sizeof(tag), output);
  }

  ControlOutcome AnswerStatus(std::span<const std::byte> input, std::span<std::byte> output) {
    if (input.size() != sizeof(last_status_query)) return {kInvalidParameter, 0};
    std::memcpy(&last_status_query, input.data(), input.size());
    if (last_status_query.tag != tag) return {protocol::kFileNotFound, 0};
    return Put(&status, sizeof(status), output);
  }

  ControlOutcome AnswerInformation(std::span<const std::byte> input, std::span<std::byte> output) {
    protocol::InformationQuery query;
    if (input.size() != sizeof(query)) return {kInvalidParameter, 0};
    std::memcpy(&query, input.data(), input.size());
    if (query.tag != tag) return {protocol::kFileNotFound, 0};
    if (failing_levels.contains(query.level)) {
      std::fill(output.begin(), output.end(), std::byte{'x'});
      return {failing_levels[query.level], output.size()};
    }
    if (query.level == protocol::Level::kInformation) return Put(&information, sizeof(information), output);
    if (query.level == protocol::Level::kTemperature && temperature_tenth_kelvin) {
      return Put(&*temperature_tenth_kelvin, sizeof(std::uint32_t), output);
    }
    if (!texts.contains(query.level)) return {kInvalidFunction, 0};
    const std::u16string& text = texts[query.level];
    return Put(text.c_str(), (text.size() + 1) * sizeof(char16_t), output);
  }

  ControlOutcome Put(const void* answer, std::size_t size, std::span<std::byte> output) {
    const std::size_t answered = std::min(size, output.size()) - missing_bytes[asked.back()];
    std::memcpy(output.data(), answer, answered);
    return {protocol::kSuccess, answered};
  }

  static constexpr std::uint32_t kInvalidFunction = 1;
  static constexpr std::uint32_t kInvalidParameter = 87;
};

}  // namespace zt::tests
