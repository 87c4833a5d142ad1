#include "variant_conversion.h"

namespace zt::shared::wmi {
namespace {

// Writes one alternative of a WmiValue into an empty VARIANT.
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

}  // namespace

HRESULT ToVariant(const WmiValue& value, com::Variant& variant) {
  std::visit(VariantWriter{*variant.Receive()}, value);
  const bool without_memory = variant.Type() == VT_BSTR && variant.Get().bstrVal == nullptr;
  return without_memory ? E_OUTOFMEMORY : S_OK;
}

HRESULT FromVariant(const VARIANT& variant, WmiValue& value) {
  switch (variant.vt) {
    case VT_EMPTY:
      value = std::monostate();
      return S_OK;
    case VT_NULL:
      value = Null();
      return S_OK;
    case VT_BOOL:
      value = variant.boolVal != VARIANT_FALSE;
      return S_OK;
    case VT_I1:
      // The field is a plain char, whose sign is the compiler's choice.
      value = std::int32_t{static_cast<signed char>(variant.cVal)};
      return S_OK;
    case VT_UI1:
      value = std::int32_t{variant.bVal};
      return S_OK;
    case VT_I2:
      value = std::int32_t{variant.iVal};
      return S_OK;
    case VT_UI2:
      value = std::int32_t{variant.uiVal};
      return S_OK;
    case VT_I4:
    case VT_INT:
      value = static_cast<std::int32_t>(variant.lVal);
      return S_OK;
    case VT_UI4:
    case VT_UINT:
      value = static_cast<std::uint32_t>(variant.ulVal);
      return S_OK;
    case VT_UI8:
      value = static_cast<std::uint64_t>(variant.ullVal);
      return S_OK;
    case VT_R4:
      value = variant.fltVal;
      return S_OK;
    case VT_R8:
      value = variant.dblVal;
      return S_OK;
    case VT_BSTR:
      value = std::wstring(com::View(variant.bstrVal));
      return S_OK;
    default:
      return kTypeMismatch;
  }
}

}  // namespace zt::shared::wmi
