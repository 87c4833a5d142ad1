#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "zt/zt_wmi_client_export.h"

namespace zt::shared::wmi {

/// HRESULTs that callers tell apart.
inline constexpr std::int32_t kSuccess = 0;
inline constexpr std::int32_t kTypeMismatch = static_cast<std::int32_t>(0x80020005);      // DISP_E_TYPEMISMATCH
inline constexpr std::int32_t kOverflow = static_cast<std::int32_t>(0x8002000A);          // DISP_E_OVERFLOW
inline constexpr std::int32_t kPropertyNotFound = static_cast<std::int32_t>(0x80041002);  // WBEM_E_NOT_FOUND
inline constexpr std::int32_t kTimedOut = static_cast<std::int32_t>(0x800705B4);          // ERROR_TIMEOUT as HRESULT

/// A property that exists and holds no value (VT_NULL).
struct Null {
  bool operator==(const Null&) const = default;
};

/// A property as WMI gives it: the VARIANT types that its properties arrive in. Empty (VT_EMPTY) is the
/// default. Note WMI's habits: an unsigned 32-bit property arrives as a signed one with the same bits, a 64-bit one as
/// decimal text.
using WmiValue =
    std::variant<std::monostate, Null, bool, std::int32_t, std::uint32_t, std::uint64_t, float, double, std::wstring>;

/// Converts as the system's `VariantChangeType` (flags 0) does. Returns its HRESULT, 0 on success; on failure `to` is
/// left as it was.
ZT_WMI_CLIENT_EXPORT std::int32_t ChangeType(const WmiValue& from, bool& to);
ZT_WMI_CLIENT_EXPORT std::int32_t ChangeType(const WmiValue& from, std::uint32_t& to);
ZT_WMI_CLIENT_EXPORT std::int32_t ChangeType(const WmiValue& from, std::uint64_t& to);
ZT_WMI_CLIENT_EXPORT std::int32_t ChangeType(const WmiValue& from, float& to);
ZT_WMI_CLIENT_EXPORT std::int32_t ChangeType(const WmiValue& from, std::wstring& to);

}  // namespace zt::shared::wmi
