#pragma once

#include <gtest/gtest.h>
#include <zt/com/com_handles.h>

#include "sdk/wmi-client/simulated/wmi_value.h"
#include "sdk/wmi-client/windows/change_type.h"

/// The values that the simulated machine knows, as VARIANTs: for tests that hold both machines to the same list.
namespace zt::shared::wmi {

/// Writes one alternative of a WmiValue into an empty VARIANT.
struct VariantWriter {
  VARIANT& to;

  void operator()(std::monostate) const {}
  void operator()(Null) const { to.vt = VT_NULL; }
  void operator()(bool value) const {
    to.vt = VT_BOOL;
    to.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  }
  void operator()(std::int32_t value) const {
    to.vt = VT_I4;
    to.lVal = value;
  }
  void operator()(std::uint32_t value) const {
    to.vt = VT_UI4;
    to.ulVal = value;
  }
  void operator()(std::uint64_t value) const {
    to.vt = VT_UI8;
    to.ullVal = value;
  }
  void operator()(float value) const {
    to.vt = VT_R4;
    to.fltVal = value;
  }
  void operator()(double value) const {
    to.vt = VT_R8;
    to.dblVal = value;
  }
  void operator()(const std::wstring& value) const {
    to.bstrVal = ::SysAllocStringLen(value.data(), static_cast<UINT>(value.size()));
    to.vt = VT_BSTR;
  }
};

/// `value` as the VARIANT that WMI would give it in.
inline void ToVariant(const WmiValue& value, com::Variant& variant) {
  std::visit(VariantWriter{*variant.Receive()}, value);
}

/// The value of a VARIANT of exactly one of the types that `ToVariant` writes; any other one fails the test.
inline WmiValue ValueOf(const VARIANT& variant) {
  switch (variant.vt) {
    case VT_EMPTY:
      return std::monostate();
    case VT_NULL:
      return Null();
    case VT_BOOL:
      EXPECT_TRUE(variant.boolVal == VARIANT_TRUE || variant.boolVal == VARIANT_FALSE) << variant.boolVal;
      return variant.boolVal != VARIANT_FALSE;
    case VT_I4:
      return static_cast<std::int32_t>(variant.lVal);
    case VT_UI4:
      return static_cast<std::uint32_t>(variant.ulVal);
    case VT_UI8:
      return static_cast<std::uint64_t>(variant.ullVal);
    case VT_R4:
      return variant.fltVal;
    case VT_R8:
      return variant.dblVal;
    case VT_BSTR:
      EXPECT_NE(variant.bstrVal, nullptr);
      return std::wstring(com::View(variant.bstrVal));
    default:
      ADD_FAILURE() << "a VARIANT of type " << variant.vt;
      return {};
  }
}

/// The system's conversion of a value.
template <typename To>
std::int32_t ChangeType(const WmiValue& from, To& to) {
  com::Variant variant;
  ToVariant(from, variant);
  return ChangeType(variant.Get(), to);
}

}  // namespace zt::shared::wmi
