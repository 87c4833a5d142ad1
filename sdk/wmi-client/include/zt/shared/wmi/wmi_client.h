#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "zt/shared/wmi/wmi_status.h"
#include "zt/zt_wmi_client_export.h"

namespace zt::shared::wmi {

/// The namespace in which Windows describes the machine and its system.
inline constexpr wchar_t kSystemNamespace[] = LR"(\\.\root\cimv2)";

/// Runs WQL queries on one WMI namespace and walks their rows. One query at a time: a new one drops the rows of the one
/// before. For one thread; COM is joined as the thread has it, initialised only where it is not, and left as found.
class ZT_WMI_CLIENT_EXPORT WMIClient {
 public:
  /// A client of `wmi_namespace`, for example `kSystemNamespace`. The first query connects to it; a failure to connect,
  /// which may take the system two minutes, is the status of that query and of every other one.
  explicit WMIClient(const std::wstring& wmi_namespace);
  ~WMIClient();
  WMIClient(const WMIClient&) = delete;
  WMIClient& operator=(const WMIClient&) = delete;

  /// Runs `wql` and gathers its rows. Returns the HRESULT of the query: 0 on success, also without rows. A row that
  /// takes more than 5 seconds, or a query of more than 15, ends it with `kTimedOut`; for a performance class
  /// (Win32_Perf…), whose provider may have to start first, it is 45 and 60. All queries of a client have
  /// four minutes together, after which each ends with `kTimedOut` at once. How long WMI takes to accept the query is
  /// not limited here. Rows gathered before a failure can still be walked.
  std::int32_t ExecQuery(const std::wstring& wql);

  /// Goes to the next row, to the first one after a query; false when there is none.
  bool Next();

  /// The property of the current row, converted to the wanted type as the system's `VariantChangeType` (flags 0) does;
  /// texts as UTF-8. Returns the HRESULT of the reading (`kPropertyNotFound` also without a current row) or of the
  /// conversion (`kTypeMismatch` for arrays, too); on failure `value` is left as it was.
  std::int32_t GetValue(const std::wstring& property, bool& value) const;
  std::int32_t GetValue(const std::wstring& property, std::uint32_t& value) const;
  std::int32_t GetValue(const std::wstring& property, std::uint64_t& value) const;
  std::int32_t GetValue(const std::wstring& property, float& value) const;
  std::int32_t GetValue(const std::wstring& property, std::string& value) const;

 private:
  class Rows;

  // As `GetValue`: of a boolean, a number or a wide text.
  template <typename Value>
  std::int32_t GetProperty(const std::wstring& property, Value& value) const;

  std::unique_ptr<Rows> rows_;
};

/// Called with the text of every query before it runs, in all clients of the process: for diagnosis. An empty function
/// ends it. For the host, between collections.
ZT_WMI_CLIENT_EXPORT void ObserveQueries(std::function<void(const std::wstring& wql)> observer);

}  // namespace zt::shared::wmi
