#include "wmi_rows.h"

#include <zt/com/object_gathering.h>

#include <algorithm>

#include "property_variant.h"
#include "zt/shared/wmi/wmi_status.h"

namespace zt::shared::wmi {
namespace {

// Rows come while they are gathered, and each of them once: nothing is kept on WMI's side.
constexpr long kQueryFlags = WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY;

}  // namespace

HRESULT WmiRows::Query(const std::wstring& wql) {
  objects_.clear();
  walked_ = 0;
  HRESULT status = connection_.Ensure();
  if (FAILED(status)) return status;
  if (patience_.IsSpent()) return base::kTimedOut;
  const base::TimeBudget::Spending spending(patience_);
  com::WaitLimits limits = LimitsOf(wql);
  limits.whole = std::min(limits.whole, patience_.Left());
  com::ComPtr<IEnumWbemClassObject> enumerator;
  status = connection_.Services().ExecQuery(com::Bstr(L"WQL").Get(), com::Bstr(wql).Get(), kQueryFlags, nullptr,
                                            enumerator.ReleaseAndGetAddressOf());
  if (SUCCEEDED(status)) status = com::AuthoriseCalls(enumerator.Get());
  // An error in the query may come up with its first row only.
  if (SUCCEEDED(status)) status = com::GatherObjects(*enumerator.Get(), limits, objects_);
  return status;
}

bool WmiRows::Next() {
  if (walked_ <= objects_.size()) ++walked_;
  return walked_ <= objects_.size();
}

HRESULT WmiRows::Read(const std::wstring& property, com::Variant& value) const {
  const bool on_row = walked_ > 0 && walked_ <= objects_.size();
  if (!on_row) return kPropertyNotFound;
  const HRESULT status = objects_[walked_ - 1]->Get(property.c_str(), 0, value.Receive(), nullptr, nullptr);
  return FAILED(status) ? status : Normalise(value.Get());
}

}  // namespace zt::shared::wmi
