#include "zt/shared/wmi/wmi_client.h"

#include <zt/com/object_gathering.h>
#include <zt/com/wmi_connection.h>

#include <cstddef>
#include <vector>

#include "query_limits.h"
#include "query_observer.h"
#include "variant_conversion.h"

namespace zt::shared::wmi {
namespace {

static_assert(com::kWaitTimedOut == kTimedOut);

// Rows come while they are gathered, and each of them once: nothing is kept on WMI's side.
constexpr long kQueryFlags = WBEM_FLAG_FORWARD_ONLY | WBEM_FLAG_RETURN_IMMEDIATELY;

}  // namespace

// The connection, and the rows of the last query.
class WMIClient::Rows {
 public:
  explicit Rows(const std::wstring& wmi_namespace) : connection_(wmi_namespace) {}

  HRESULT Query(const std::wstring& wql) {
    objects_.clear();
    walked_ = 0;
    HRESULT status = connection_.Ensure();
    if (FAILED(status)) return status;
    com::ComPtr<IEnumWbemClassObject> enumerator;
    status = connection_.Services().ExecQuery(com::Bstr(L"WQL").Get(), com::Bstr(wql).Get(), kQueryFlags, nullptr,
                                              enumerator.ReleaseAndGetAddressOf());
    if (SUCCEEDED(status)) status = com::AuthoriseCalls(enumerator.Get());
    // An error in the query may come up with its first row only.
    if (SUCCEEDED(status)) status = com::GatherObjects(*enumerator.Get(), LimitsOf(wql), objects_);
    return status;
  }

  bool Next() {
    if (walked_ <= objects_.size()) ++walked_;
    return walked_ <= objects_.size();
  }

  HRESULT Read(const std::wstring& property, WmiValue& value) const {
    const bool on_row = walked_ > 0 && walked_ <= objects_.size();
    if (!on_row) return kPropertyNotFound;
    com::Variant read;
    const HRESULT status = objects_[walked_ - 1]->Get(property.c_str(), 0, read.Receive(), nullptr, nullptr);
    return FAILED(status) ? status : FromVariant(read.Get(), value);
  }

 private:
  com::WmiConnection connection_;  // the first member: the others go before it
  std::vector<com::ComPtr<IWbemClassObject>> objects_;
  std::size_t walked_ = 0;  // rows that Next has gone to; one more than there are at the end
};

WMIClient::WMIClient(const std::wstring& wmi_namespace) : rows_(std::make_unique<Rows>(wmi_namespace)) {}

WMIClient::~WMIClient() = default;

std::int32_t WMIClient::ExecQuery(const std::wstring& wql) {
  AnnounceQuery(wql);
  return ReportStatus(wql, rows_->Query(wql));
}

bool WMIClient::Next() {
  return rows_->Next();
}

std::int32_t WMIClient::GetProperty(const std::wstring& property, WmiValue& value) const {
  return rows_->Read(property, value);
}

}  // namespace zt::shared::wmi
