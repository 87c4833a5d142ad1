#include "zt/shared/wmi/wmi_client.h"

#include "base/time_limit.h"
#include "change_type.h"
#include "query_observer.h"
#include "wmi_rows.h"

namespace zt::shared::wmi {

static_assert(base::kTimedOut == kTimedOut);

class WMIClient::Rows : public WmiRows {
 public:
  using WmiRows::WmiRows;
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

template <typename Value>
std::int32_t WMIClient::GetProperty(const std::wstring& property, Value& value) const {
  com::Variant read;
  const HRESULT status = rows_->Read(property, read);
  return FAILED(status) ? status : ChangeType(read.Get(), value);
}

template std::int32_t WMIClient::GetProperty(const std::wstring& property, bool& value) const;
template std::int32_t WMIClient::GetProperty(const std::wstring& property, std::uint32_t& value) const;
template std::int32_t WMIClient::GetProperty(const std::wstring& property, std::uint64_t& value) const;
template std::int32_t WMIClient::GetProperty(const std::wstring& property, float& value) const;
template std::int32_t WMIClient::GetProperty(const std::wstring& property, std::wstring& value) const;

}  // namespace zt::shared::wmi
