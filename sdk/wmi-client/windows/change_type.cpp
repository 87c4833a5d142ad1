#include "change_type.h"

#include <zt/com/com_handles.h>

namespace zt::shared::wmi {
namespace {

// Converts to `type`; `read` takes the result out of the VARIANT.
template <typename T, typename Read>
HRESULT Convert(const VARIANT& from, VARTYPE type, T& to, const Read& read) {
  com::Variant converted;
  // Not every compiler's headers say that the source is only read.
  auto* const source = const_cast<VARIANT*>(&from);
  const HRESULT status = ::VariantChangeType(converted.Receive(), source, 0, type);
  if (SUCCEEDED(status)) to = read(converted.Get());
  return status;
}

}  // namespace

HRESULT ChangeType(const VARIANT& from, bool& to) {
  return Convert(from, VT_BOOL, to, [](const VARIANT& result) { return result.boolVal != VARIANT_FALSE; });
}

HRESULT ChangeType(const VARIANT& from, std::uint32_t& to) {
  return Convert(from, VT_UI4, to, [](const VARIANT& result) { return static_cast<std::uint32_t>(result.ulVal); });
}

HRESULT ChangeType(const VARIANT& from, std::uint64_t& to) {
  return Convert(from, VT_UI8, to, [](const VARIANT& result) { return static_cast<std::uint64_t>(result.ullVal); });
}

HRESULT ChangeType(const VARIANT& from, float& to) {
  return Convert(from, VT_R4, to, [](const VARIANT& result) { return result.fltVal; });
}

HRESULT ChangeType(const VARIANT& from, std::wstring& to) {
  return Convert(from, VT_BSTR, to, [](const VARIANT& result) { return std::wstring(com::View(result.bstrVal)); });
}

}  // namespace zt::shared::wmi
