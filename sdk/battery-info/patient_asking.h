#pragma once

#include <algorithm>
#include <chrono>
#include <functional>

#include "base/time_limit.h"
#include "battery_reading.h"

namespace zt::shared::battery {

/// How long a driver may take for one answer, and then to give up a request that is cancelled.
inline constexpr std::chrono::milliseconds kAnswerLimit{1'000};
inline constexpr std::chrono::milliseconds kCancelLimit{1'000};

/// How long all batteries of a machine may take together.
inline constexpr std::chrono::milliseconds kAllBatteriesLimit{10'000};

/// A request to one battery's device whose answer is waited for `limit` at most; `protocol::kTimedOut` when that comes
/// first.
using TimedControl = std::function<ControlOutcome(std::uint32_t code, std::span<const std::byte> input,
                                                  std::span<std::byte> output, std::chrono::milliseconds limit)>;

/// Asks one device within the limits. A driver that lets one request run out of time is not asked again, and none is
/// once `all` is over: the cycle waits for it. `all` outlives what is returned.
template <typename Clock>
ControlDevice AskPatiently(TimedControl send, const base::TimeLimitBy<Clock>& all) {
  return [send = std::move(send), &all, answers = true](std::uint32_t code, std::span<const std::byte> input,
                                                        std::span<std::byte> output) mutable {
    const std::chrono::milliseconds limit = std::min(kAnswerLimit, all.Left());
    if (!answers || limit == limit.zero()) return ControlOutcome{protocol::kTimedOut, 0};
    const ControlOutcome outcome = send(code, input, output, limit);
    answers = outcome.error != protocol::kTimedOut;
    return outcome;
  };
}

}  // namespace zt::shared::battery
