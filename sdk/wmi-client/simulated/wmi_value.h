#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace zt::shared::wmi {

/// A property that exists and holds no value (VT_NULL).
struct Null {
  bool operator==(const Null&) const = default;
};

/// A property as WMI gives it: the VARIANT types that its properties arrive in. Empty (VT_EMPTY) is the
/// default. Note WMI's habits: an unsigned 32-bit property arrives as a signed one with the same bits, a 64-bit one as
/// decimal text.
using WmiValue =
    std::variant<std::monostate, Null, bool, std::int32_t, std::uint32_t, std::uint64_t, float, double, std::wstring>;

}  // namespace zt::shared::wmi
