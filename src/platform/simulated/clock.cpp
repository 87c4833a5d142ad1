#include "platform/clock.h"

#include <chrono>
#include <ctime>
#include <optional>

#include "simulation/calls.h"
#include "simulation/machine.h"

// The clock of the machine's profile; the real one, by the C library's calendar alone, where the profile has none.
namespace zt::telemetry::collector::performancesamples::platform {
namespace {

constexpr std::int64_t kSecondsPerMinute = 60;
constexpr int kTmFirstYear = 1900;
constexpr std::int64_t kAbsurdTime = 253'402'300'799;  // the last second of the year 9999

std::int64_t SecondsAsIfUtc(const std::tm& fields) {
  const std::chrono::year_month_day date{std::chrono::year{fields.tm_year + kTmFirstYear},
                                         std::chrono::month{static_cast<unsigned>(fields.tm_mon + 1)},
                                         std::chrono::day{static_cast<unsigned>(fields.tm_mday)}};
  const std::chrono::seconds time = std::chrono::sys_days{date}.time_since_epoch() +
                                    std::chrono::hours{fields.tm_hour} + std::chrono::minutes{fields.tm_min} +
                                    std::chrono::seconds{fields.tm_sec};
  return time.count();
}

// Local time as the C library breaks it down; absent for a moment that it cannot.
std::optional<std::tm> LocalFields(std::int64_t utc_seconds) {
  const auto time = static_cast<std::time_t>(utc_seconds);
  const std::tm* const fields = std::localtime(&time);
  return fields != nullptr ? std::optional(*fields) : std::nullopt;
}

std::int32_t RealLocalOffset(std::int64_t utc_seconds) {
  const std::optional<std::tm> local = LocalFields(utc_seconds);
  return local ? static_cast<std::int32_t>((SecondsAsIfUtc(*local) - utc_seconds) / kSecondsPerMinute) : 0;
}

// The moment that the clocks would show the same digits if daylight saving were left out tells the standard offset.
std::int32_t RealStandardOffset(std::int64_t utc_seconds) {
  std::optional<std::tm> local = LocalFields(utc_seconds);
  if (!local || local->tm_isdst <= 0) return RealLocalOffset(utc_seconds);
  const std::int64_t shown = SecondsAsIfUtc(*local);
  local->tm_isdst = 0;
  const std::time_t same_in_standard_time = std::mktime(&*local);
  if (same_in_standard_time == -1) return RealLocalOffset(utc_seconds);
  return static_cast<std::int32_t>((shown - static_cast<std::int64_t>(same_in_standard_time)) / kSecondsPerMinute);
}

}  // namespace

std::int64_t CurrentTime() {
  if (simulation::Announce("Clock", {simulation::Disturbance::kAbsurd}) == simulation::Disturbance::kAbsurd) {
    return kAbsurdTime;
  }
  const std::optional<simulation::Clock>& clock = simulation::CurrentMachine().clock;
  const std::optional<std::int64_t> standing = clock ? clock->utc_seconds : std::nullopt;
  return standing ? *standing : static_cast<std::int64_t>(std::time(nullptr));
}

std::int32_t LocalOffsetMinutes(std::int64_t utc_seconds) {
  const std::optional<simulation::Clock>& clock = simulation::CurrentMachine().clock;
  return clock ? clock->local_offset_minutes : RealLocalOffset(utc_seconds);
}

std::int32_t StandardOffsetMinutes(std::int64_t utc_seconds) {
  const std::optional<simulation::Clock>& clock = simulation::CurrentMachine().clock;
  return clock ? clock->standard_offset_minutes : RealStandardOffset(utc_seconds);
}

}  // namespace zt::telemetry::collector::performancesamples::platform
