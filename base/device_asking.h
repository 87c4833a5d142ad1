#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <utility>

#include "base/time_limit.h"

/// Requests to devices, and the time that their drivers have to answer.
namespace zt::base {

/// Outcome of one request to a device: a system error code, and how many bytes were answered.
struct ControlOutcome {
  std::uint32_t error = 0;
  std::size_t size = 0;
};

/// The error of a request whose answer did not come in time (ERROR_TIMEOUT).
inline constexpr std::uint32_t kRequestTimedOut = 1460;

/// How long a driver may take to give up a request that is cancelled.
inline constexpr std::chrono::milliseconds kCancelLimit{1'000};

/// Sends a request to one device: its code, its input, and room for the answer.
using ControlDevice =
    std::function<ControlOutcome(std::uint32_t code, std::span<const std::byte> input, std::span<std::byte> output)>;

/// The same, and waits for the answer `limit` at most.
using TimedControl = std::function<ControlOutcome(std::uint32_t code, std::span<const std::byte> input,
                                                  std::span<std::byte> output, std::chrono::milliseconds limit)>;

/// Asks one device, whose driver has `answer_limit` for each answer. One that lets a request run out of time is not
/// asked again, and none is once `all`, the time of all such devices, is over: the cycle waits for it.
template <typename Clock>
ControlDevice AskPatiently(TimedControl send, std::chrono::milliseconds answer_limit, TimeLimitBy<Clock> all) {
  return [send = std::move(send), answer_limit, all, answers = true](
             std::uint32_t code, std::span<const std::byte> input, std::span<std::byte> output) mutable {
    const std::chrono::milliseconds limit = std::min(answer_limit, all.Left());
    if (!answers || limit == limit.zero()) return ControlOutcome{kRequestTimedOut, 0};
    const ControlOutcome outcome = send(code, input, output, limit);
    answers = outcome.error != kRequestTimedOut;
    return outcome;
  };
}

}  // namespace zt::base
