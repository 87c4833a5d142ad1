#pragma once

#include <chrono>

namespace zt::shared::battery {

/// How long a battery's driver may take for one answer, and all batteries of a machine together.
inline constexpr std::chrono::milliseconds kAnswerLimit{1'000};
inline constexpr std::chrono::milliseconds kAllBatteriesLimit{10'000};

}  // namespace zt::shared::battery
