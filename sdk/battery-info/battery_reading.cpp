#include "battery_reading.h"

#include <zt/text/wide_text.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <utility>

#include "without_blanks.h"

namespace zt::shared::battery {
namespace {

using protocol::Level;

constexpr int kAttempts = 2;
constexpr std::size_t kMostTextUnits = 256;  // drivers keep to 128 bytes

// What a driver's answer comes to as an error code: one that breaks off tells no more than none.
std::uint32_t ErrorOf(const ControlOutcome& answer, std::size_t expected_size) {
  const bool is_short = answer.error == protocol::kSuccess && answer.size < expected_size;
  return is_short ? protocol::kInvalidData : answer.error;
}

template <typename Query, typename Answer>
std::uint32_t Ask(const ControlDevice& device, std::uint32_t code, const Query& query, Answer& answer) {
  Answer received{};
  const ControlOutcome outcome =
      device(code, std::as_bytes(std::span(&query, 1)), std::as_writable_bytes(std::span(&received, 1)));
  const std::uint32_t error = ErrorOf(outcome, sizeof(Answer));
  if (error == protocol::kSuccess) answer = received;
  return error;
}

std::uint32_t ReadTag(const ControlDevice& device, std::uint32_t& tag) {
  constexpr std::uint32_t kNoWait = 0;
  return Ask(device, protocol::kQueryTag, kNoWait, tag);
}

// A text of the driver, which ends with a zero or with the answer.
std::string ReadText(const ControlDevice& device, std::uint32_t tag, Level level) {
  const protocol::InformationQuery query{tag, level, 0};
  std::array<char16_t, kMostTextUnits> units{};
  const ControlOutcome answer = device(protocol::kQueryInformation, std::as_bytes(std::span(&query, 1)),
                                       std::as_writable_bytes(std::span(units)));
  if (answer.error != protocol::kSuccess) return {};
  const auto answered = static_cast<std::ptrdiff_t>(std::min(answer.size / sizeof(char16_t), units.size()));
  const std::wstring wide(units.begin(), std::find(units.begin(), units.begin() + answered, u'\0'));
  return WithoutBlanks(text::ToUtf8(wide));
}

std::optional<std::uint32_t> ReadTemperature(const ControlDevice& device, std::uint32_t tag) {
  std::uint32_t temperature = 0;
  const protocol::InformationQuery query{tag, Level::kTemperature, 0};
  const std::uint32_t error = Ask(device, protocol::kQueryInformation, query, temperature);
  return error == protocol::kSuccess ? std::optional(temperature) : std::nullopt;
}

// There is no battery of this tag, or none at all.
bool IsGone(std::uint32_t error) {
  return error == protocol::kFileNotFound;
}

// The status comes last: it tells whether the battery is still the one that all the rest was read from.
std::uint32_t ReadTagged(const ControlDevice& device, std::uint32_t tag, BatteryReading& reading) {
  const protocol::InformationQuery query{tag, Level::kInformation, 0};
  const std::uint32_t error = Ask(device, protocol::kQueryInformation, query, reading.information);
  if (error != protocol::kSuccess) return error;
  reading.serial_number = ReadText(device, tag, Level::kSerialNumber);
  reading.unique_id = ReadText(device, tag, Level::kUniqueId);
  reading.device_name = ReadText(device, tag, Level::kDeviceName);
  reading.temperature_tenth_kelvin = ReadTemperature(device, tag);
  const protocol::StatusQuery status_query{.tag = tag};
  return Ask(device, protocol::kQueryStatus, status_query, reading.status);
}

}  // namespace

SlotReading ReadBattery(const ControlDevice& device) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    std::uint32_t tag = protocol::kNoTag;
    const std::uint32_t tag_error = ReadTag(device, tag);
    if (IsGone(tag_error) || (tag_error == protocol::kSuccess && tag == protocol::kNoTag)) return {};
    if (tag_error != protocol::kSuccess) return {std::nullopt, tag_error};
    BatteryReading reading;
    const std::uint32_t error = ReadTagged(device, tag, reading);
    if (error == protocol::kSuccess) return {std::move(reading)};
    if (!IsGone(error)) return {std::nullopt, error};
  }
  return {};
}

}  // namespace zt::shared::battery
