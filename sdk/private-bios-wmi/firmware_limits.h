#pragma once

#include <chrono>

#include "base/wmi_waiting.h"

namespace zt::shared::ztbios {

/// How long the interface's instance may take to be found, and each of the two calls that follow.
inline constexpr base::WaitLimits kInstanceLimits;
inline constexpr std::chrono::milliseconds kCallLimit{5'000};

/// How long one command may take therefore.
inline constexpr std::chrono::milliseconds kCommandLimit = kInstanceLimits.whole + 2 * kCallLimit;

/// How long all commands of one client may take together: each graphics card without a temperature asks.
inline constexpr std::chrono::minutes kAllCommandsLimit{1};

}  // namespace zt::shared::ztbios
