#pragma once

namespace zt::tests {

/// The namespace of WMI that the collector's clients ask.
inline constexpr wchar_t kWmiNamespace[] = LR"(\\.\root\cimv2)";

/// One that no machine has.
inline constexpr wchar_t kNoWmiNamespace[] = LR"(\\.\root\no_such_namespace)";

}  // namespace zt::tests
