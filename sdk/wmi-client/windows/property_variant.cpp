#include "property_variant.h"

#include <cstdint>

#include "zt/shared/wmi/wmi_status.h"

namespace zt::shared::wmi {
namespace {

HRESULT BecomeInteger(VARIANT& property, std::int32_t value) {
  property.vt = VT_I4;
  property.lVal = value;
  return S_OK;
}

HRESULT NormaliseBoolean(VARIANT& property) {
  if (property.boolVal != VARIANT_FALSE) property.boolVal = VARIANT_TRUE;
  return S_OK;
}

// A text of null is an empty one.
HRESULT NormaliseText(VARIANT& property) {
  if (property.bstrVal == nullptr) property.bstrVal = ::SysAllocString(L"");
  return property.bstrVal != nullptr ? S_OK : E_OUTOFMEMORY;
}

}  // namespace

HRESULT Normalise(VARIANT& property) {
  switch (property.vt) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_I4:
    case VT_UI4:
    case VT_UI8:
    case VT_R4:
    case VT_R8:
      return S_OK;
    case VT_BOOL:
      return NormaliseBoolean(property);
    case VT_I1:
      // The field is a plain char, whose sign is the compiler's choice.
      return BecomeInteger(property, static_cast<signed char>(property.cVal));
    case VT_UI1:
      return BecomeInteger(property, property.bVal);
    case VT_I2:
      return BecomeInteger(property, property.iVal);
    case VT_UI2:
      return BecomeInteger(property, property.uiVal);
    case VT_INT:
      return BecomeInteger(property, property.intVal);
    case VT_UINT:
      property.vt = VT_UI4;
      property.ulVal = property.uintVal;
      return S_OK;
    case VT_BSTR:
      return NormaliseText(property);
    default:
      return kTypeMismatch;
  }
}

}  // namespace zt::shared::wmi
