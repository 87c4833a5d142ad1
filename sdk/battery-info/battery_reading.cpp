#include "battery_reading.h"

#include <zt/text/wide_text.h>

#include <algorithm>
#include <array>

#include "without_blanks.h"

namespace zt::shared::battery {
namespace {

using protocol::Level;

constexpr int kAttempts = 2;
constexpr std::size_t kMostTextUnits = 256;  // drivers keep to 128 bytes

enum class Outcome { kRead, kGone, kNoAnswer };

Outcome OutcomeOf(const ControlOutcome& answer, std::size_t expected_size) {
  if (answer.error == protocol::kFileNotFound) return Outcome::kGone;
  return answer.error == protocol::kSuccess && answer.size >= expected_size ? Outcome::kRead : Outcome::kNoAnswer;
}

template <typename Query, typename Answer>
Outcome Ask(const ControlDevice& device, std::uint32_t code, const Query& query, Answer& answer) {
  Answer received{};
  const ControlOutcome outcome =
      device(code, std::as_bytes(std::span(&query, 1)), std::as_writable_bytes(std::span(&received, 1)));
  if (OutcomeOf(outcome, sizeof(Answer)) == Outcome::kRead) answer = received;
  return OutcomeOf(outcome, sizeof(Answer));
}

std::uint32_t ReadTag(const ControlDevice& device) {
  constexpr std::uint32_t kNoWait = 0;
  std::uint32_t tag = protocol::kNoTag;
  Ask(device, protocol::kQueryTag, kNoWait, tag);
  return tag;
}

// A text of the driver, which ends with a zero or with the answer.
std::string ReadText(const ControlDevice& device, std::uint32_t tag, Level level) {
  const protocol::InformationQuery query{tag, level, 0};
  std::array<char16_t, kMostTextUnits> units{};
  const ControlOutcome answer = device(protocol::kQueryInformation, std::as_bytes(std::span(&query, 1)),
                                       std::as_writable_bytes(std::span(units)));
  if (OutcomeOf(answer, 0) != Outcome::kRead) return {};
  const auto answered = static_cast<std::ptrdiff_t>(std::min(answer.size / sizeof(char16_t), units.size()));
  const std::wstring wide(units.begin(), std::find(units.begin(), units.begin() + answered, u'\0'));
  return WithoutBlanks(text::ToUtf8(wide));
}

std::optional<std::uint32_t> ReadTemperature(const ControlDevice& device, std::uint32_t tag) {
  std::uint32_t temperature = 0;
  const protocol::InformationQuery query{tag, Level::kTemperature, 0};
  const Outcome outcome = Ask(device, protocol::kQueryInformation, query, temperature);
  return outcome == Outcome::kRead ? std::optional(temperature) : std::nullopt;
}

// The status comes last: it tells whether the battery is still the one that all the rest was read from.
Outcome ReadTagged(const ControlDevice& device, std::uint32_t tag, BatteryReading& reading) {
  const protocol::InformationQuery query{tag, Level::kInformation, 0};
  const Outcome informed = Ask(device, protocol::kQueryInformation, query, reading.information);
  if (informed != Outcome::kRead) return informed;
  reading.serial_number = ReadText(device, tag, Level::kSerialNumber);
  reading.unique_id = ReadText(device, tag, Level::kUniqueId);
  reading.device_name = ReadText(device, tag, Level::kDeviceName);
  reading.temperature_tenth_kelvin = ReadTemperature(device, tag);
  const protocol::StatusQuery status_query{.tag = tag};
  return Ask(device, protocol::kQueryStatus, status_query, reading.status);
}

}  // namespace

std::optional<BatteryReading> ReadBattery(const ControlDevice& device) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    const std::uint32_t tag = ReadTag(device);
    if (tag == protocol::kNoTag) return std::nullopt;
    BatteryReading reading;
    const Outcome outcome = ReadTagged(device, tag, reading);
    if (outcome == Outcome::kRead) return reading;
    if (outcome == Outcome::kNoAnswer) return std::nullopt;
  }
  return std::nullopt;
}

}  // namespace zt::shared::battery
