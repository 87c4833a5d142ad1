#pragma once

#include <zt/com/wmi_connection.h>

#include <chrono>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "base/time_budget.h"
#include "query_limits.h"

namespace zt::shared::wmi {

/// A connection to one WMI namespace, and the rows of the last query. The operations are those of `WMIClient`.
class WmiRows {
 public:
  /// `patience`: how long all queries may take together; what is asked then ends with `base::kTimedOut` at once.
  explicit WmiRows(const std::wstring& wmi_namespace, com::WmiConnection::Connect connect = com::ConnectToNamespace,
                   std::chrono::milliseconds patience = kAllQueriesLimit)
      : connection_(wmi_namespace, std::move(connect)), patience_(patience) {}

  HRESULT Query(const std::wstring& wql);
  bool Next();

  /// The property of the current row as `Normalise` leaves it; undefined after a failure.
  HRESULT Read(const std::wstring& property, com::Variant& value) const;

 private:
  com::WmiConnection connection_;  // the first member: the others go before it
  base::TimeBudget patience_;
  std::vector<com::ComPtr<IWbemClassObject>> objects_;
  std::size_t walked_ = 0;  // rows that Next has gone to; one more than there are at the end
};

}  // namespace zt::shared::wmi
