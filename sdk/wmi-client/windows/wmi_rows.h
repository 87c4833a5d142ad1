#pragma once

#include <zt/com/wmi_connection.h>

#include <cstddef>
#include <string>
#include <vector>

namespace zt::shared::wmi {

/// A connection to one WMI namespace, and the rows of the last query. The operations are those of `WMIClient`.
class WmiRows {
 public:
  explicit WmiRows(const std::wstring& wmi_namespace) : connection_(wmi_namespace) {}

  HRESULT Query(const std::wstring& wql);
  bool Next();

  /// The property of the current row as `Normalise` leaves it; undefined after a failure.
  HRESULT Read(const std::wstring& property, com::Variant& value) const;

 private:
  com::WmiConnection connection_;  // the first member: the others go before it
  std::vector<com::ComPtr<IWbemClassObject>> objects_;
  std::size_t walked_ = 0;  // rows that Next has gone to; one more than there are at the end
};

}  // namespace zt::shared::wmi
