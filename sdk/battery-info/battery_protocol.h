#pragma once

#include <cstdint>

/// What the system's battery devices are asked and answer, byte for byte.
namespace zt::shared::battery::protocol {

inline constexpr std::uint32_t kQueryTag = 0x294040;
inline constexpr std::uint32_t kQueryInformation = 0x294044;
inline constexpr std::uint32_t kQueryStatus = 0x29404C;

inline constexpr std::uint32_t kNoTag = 0;

/// System error codes.
inline constexpr std::uint32_t kSuccess = 0;
inline constexpr std::uint32_t kFileNotFound = 2;  // the slot is empty, or the battery with this tag is gone
inline constexpr std::uint32_t kInvalidData = 13;

enum class Level : std::int32_t {
  kInformation = 0,
  kTemperature = 2,
  kDeviceName = 4,
  kUniqueId = 7,
  kSerialNumber = 8
};

struct InformationQuery {
  std::uint32_t tag = kNoTag;
  Level level = Level::kInformation;
  std::int32_t at_rate = 0;
};
static_assert(sizeof(InformationQuery) == 12);

inline constexpr std::uint32_t kSystemBattery = 0x80000000;
inline constexpr std::uint32_t kCapacityRelative = 0x40000000;
inline constexpr std::uint32_t kShortTerm = 0x20000000;

inline constexpr std::uint32_t kUnknownCapacity = 0xFFFFFFFF;
inline constexpr std::uint32_t kUnknownVoltage = 0xFFFFFFFF;
inline constexpr std::int32_t kUnknownRate = INT32_MIN;

struct Information {
  std::uint32_t capabilities = 0;
  std::uint8_t technology = 0;
  std::uint8_t reserved[3] = {};
  std::uint8_t chemistry[4] = {};
  std::uint32_t designed_capacity = kUnknownCapacity;      // milliwatt hours, or units of the driver's own
  std::uint32_t full_charged_capacity = kUnknownCapacity;  // the same
  std::uint32_t default_alert_1 = 0;
  std::uint32_t default_alert_2 = 0;
  std::uint32_t critical_bias = 0;
  std::uint32_t cycle_count = 0;
};
static_assert(sizeof(Information) == 36);

struct StatusQuery {
  std::uint32_t tag = kNoTag;
  std::uint32_t timeout = 0;  // milliseconds to wait for a change; 0: answer at once
  std::uint32_t power_state = 0;
  std::uint32_t low_capacity = 0;
  std::uint32_t high_capacity = 0;
};
static_assert(sizeof(StatusQuery) == 20);

inline constexpr std::uint32_t kPowerOnLine = 1;
inline constexpr std::uint32_t kDischarging = 2;
inline constexpr std::uint32_t kCharging = 4;
inline constexpr std::uint32_t kCritical = 8;

struct Status {
  std::uint32_t power_state = 0;
  std::uint32_t capacity = kUnknownCapacity;  // in the units of Information
  std::uint32_t voltage = kUnknownVoltage;    // millivolts
  std::int32_t rate = kUnknownRate;           // milliwatts or units an hour; negative while discharging
};
static_assert(sizeof(Status) == 16);

}  // namespace zt::shared::battery::protocol
