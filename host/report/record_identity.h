#pragma once

#include <google/protobuf/message.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace zt::telemetry::host {

/// What a record of a machine is: the numbers are those of the page's data.
enum class RecordKind : std::uint8_t { kLive = 0, kThermal = 1, kNetwork = 2, kStored = 3 };

/// What the heading of a record tells.
struct RecordIdentity {
  RecordKind kind = RecordKind::kLive;
  /// Empty where the record names no machine.
  std::string serial;
  /// The identity has no more room than for the beginning of the serial number.
  bool serial_is_cut = false;
  /// Nothing when the record does not tell it. Of an hourly record the beginning of its hour in UTC, else the
  /// machine's wall-clock time.
  std::optional<std::chrono::sys_seconds> time;
  /// What the wall clock is ahead of UTC, where the record tells it.
  std::optional<std::chrono::minutes> zone;
};

RecordIdentity IdentityOf(const google::protobuf::Message& record);

}  // namespace zt::telemetry::host
