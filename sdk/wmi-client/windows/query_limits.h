#pragma once

#include <zt/com/object_gathering.h>

#include <string_view>

namespace zt::shared::wmi {

/// How long the rows of `wql` may take. Longer for the performance classes (Win32_Perf…): the first to ask for one
/// waits until the provider of them all has started, which takes more than 20 seconds on some machines.
com::WaitLimits LimitsOf(std::wstring_view wql);

}  // namespace zt::shared::wmi
