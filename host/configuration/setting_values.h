#pragma once

#include <plog/Severity.h>

#include <cstdint>

#include "host/consent/consent.h"
#include "host/option_values.h"

/// What settings may be, alike in the configuration file and on the command line.
namespace zt::telemetry::host {

inline const Choices<plog::Severity> kLogLevels = {
    {"none", plog::none}, {"fatal", plog::fatal}, {"error", plog::error},    {"warning", plog::warning},
    {"info", plog::info}, {"debug", plog::debug}, {"verbose", plog::verbose}};

inline const Choices<Treatment> kTreatments = {
    {"keep", Treatment::kKeep}, {"drop", Treatment::kDrop}, {"hash", Treatment::kHash}};

inline constexpr std::int64_t kMostDays = 36'500;  // a hundred years

/// Least size of an outbox that is held to by itself: a smaller one would lose what was just collected.
inline constexpr std::int64_t kLeastOutboxBytes = std::int64_t{1} << 20;
inline constexpr std::int64_t kMostOutboxBytes = std::int64_t{1} << 40;

/// The name of a choice.
template <typename T>
std::string_view NameOf(const Choices<T>& choices, T value) {
  for (const auto& choice : choices) {
    if (choice.second == value) return choice.first;
  }
  return "unknown";
}

}  // namespace zt::telemetry::host
