#pragma once

#include <cstdint>

namespace zt::shared::wmi {

/// HRESULTs that callers tell apart.
inline constexpr std::int32_t kSuccess = 0;
inline constexpr std::int32_t kTypeMismatch = static_cast<std::int32_t>(0x80020005);      // DISP_E_TYPEMISMATCH
inline constexpr std::int32_t kOverflow = static_cast<std::int32_t>(0x8002000A);          // DISP_E_OVERFLOW
inline constexpr std::int32_t kPropertyNotFound = static_cast<std::int32_t>(0x80041002);  // WBEM_E_NOT_FOUND
inline constexpr std::int32_t kTimedOut = static_cast<std::int32_t>(0x800705B4);          // ERROR_TIMEOUT as HRESULT

}  // namespace zt::shared::wmi
