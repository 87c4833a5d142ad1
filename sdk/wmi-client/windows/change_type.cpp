#include "variant_conversion.h"

namespace zt::shared::wmi {
namespace {

// Converts to `type`; `read` takes the result out of the VARIANT.
template <typename T, typename Read>
std::int32_t Convert(const WmiValue& from, VARTYPE type, T& to, const Read& read) {
  com::Variant original;
  HRESULT status = ToVariant(from, original);
  if (FAILED(status)) return status;
  com::Variant converted;
  status = ::VariantChangeType(converted.Receive(), &original.Get(), 0, type);
  if (SUCCEEDED(status)) to = read(converted.Get());
  return status;
}

}  // namespace

std::int32_t ChangeType(const WmiValue& from, bool& to) {
  return Convert(from, VT_BOOL, to, [](const VARIANT& result) { return result.boolVal != VARIANT_FALSE; });
}

std::int32_t ChangeType(const WmiValue& from, std::uint32_t& to) {
  return Convert(from, VT_UI4, to, [](const VARIANT& result) { return static_cast<std::uint32_t>(result.ulVal); });
}

std::int32_t ChangeType(const WmiValue& from, std::uint64_t& to) {
  return Convert(from, VT_UI8, to, [](const VARIANT& result) { return static_cast<std::uint64_t>(result.ullVal); });
}

std::int32_t ChangeType(const WmiValue& from, float& to) {
  return Convert(from, VT_R4, to, [](const VARIANT& result) { return result.fltVal; });
}

std::int32_t ChangeType(const WmiValue& from, std::wstring& to) {
  return Convert(from, VT_BSTR, to, [](const VARIANT& result) { return std::wstring(com::View(result.bstrVal)); });
}

}  // namespace zt::shared::wmi
