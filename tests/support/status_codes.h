#pragma once

#include <cstdint>

// Codes with which the system fails, under the names that its headers have for them.
namespace zt::tests {

/// A status in the form in which programs keep it.
constexpr std::int32_t StatusOf(std::uint32_t bits) {
  return static_cast<std::int32_t>(bits);
}

// Of WMI.
inline constexpr std::int32_t kWmiFailed = StatusOf(0x80041001);         // WBEM_E_FAILED
inline constexpr std::int32_t kNotFound = StatusOf(0x80041002);          // WBEM_E_NOT_FOUND
inline constexpr std::int32_t kAccessDenied = StatusOf(0x80041003);      // WBEM_E_ACCESS_DENIED
inline constexpr std::int32_t kInvalidNamespace = StatusOf(0x8004100E);  // WBEM_E_INVALID_NAMESPACE
inline constexpr std::int32_t kInvalidClass = StatusOf(0x80041010);      // WBEM_E_INVALID_CLASS
inline constexpr std::int32_t kInvalidQuery = StatusOf(0x80041017);      // WBEM_E_INVALID_QUERY

// Of COM, and of the rest of the system in its form.
inline constexpr std::int32_t kNullPointer = StatusOf(0x80004003);         // E_POINTER
inline constexpr std::int32_t kUnspecifiedFailure = StatusOf(0x80004005);  // E_FAIL
inline constexpr std::int32_t kChangedMode = StatusOf(0x80010106);         // RPC_E_CHANGED_MODE
inline constexpr std::int32_t kClassNotRegistered = StatusOf(0x80040154);  // REGDB_E_CLASSNOTREG
inline constexpr std::int32_t kOutOfMemory = StatusOf(0x8007000E);         // E_OUTOFMEMORY
inline constexpr std::int32_t kServerUnavailable = StatusOf(0x800706BA);   // RPC_S_SERVER_UNAVAILABLE
inline constexpr std::int32_t kDeviceLost = StatusOf(0x800710DF);          // ERROR_DEVICE_NOT_AVAILABLE

// Of Windows' own calls.
inline constexpr std::int32_t kCallDenied = 5;  // ERROR_ACCESS_DENIED

}  // namespace zt::tests
