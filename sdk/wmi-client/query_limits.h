#pragma once

#include <chrono>
#include <string_view>

#include "base/wmi_waiting.h"

namespace zt::shared::wmi {

/// How long the rows of a query may take, and those of a performance class.
inline constexpr base::WaitLimits kOrdinaryLimits;
inline constexpr base::WaitLimits kPerformanceLimits{std::chrono::seconds(45), std::chrono::seconds(60)};

/// How long all queries of one client may take together: a cycle has one client, and how many queries it runs depends
/// on the machine's drives, partitions and cards.
inline constexpr std::chrono::minutes kAllQueriesLimit{4};

/// How long the rows of `wql` may take. Longer for the performance classes (Win32_Perf…): the first to ask for one
/// waits until the provider of them all has started, which takes more than 20 seconds on some machines.
base::WaitLimits LimitsOf(std::wstring_view wql);

}  // namespace zt::shared::wmi
