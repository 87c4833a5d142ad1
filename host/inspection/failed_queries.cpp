#include "host/inspection/failed_queries.h"

#include <zt/text/wide_text.h>

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

#include "host/inspection/failure_text.h"
#include "zt/shared/wmi/query_failures.h"

namespace zt::telemetry::host::inspection {
namespace {

// A table may be queried once for each interface: the first failure stands for all of one kind.
void AddOnce(std::string failure, std::vector<std::string>& failures) {
  if (std::find(failures.begin(), failures.end(), failure) == failures.end()) failures.push_back(std::move(failure));
}

// "Win32_NetworkAdapter" of "SELECT * from Win32_NetworkAdapter WHERE ...": the condition names every interface.
std::string TableOf(const std::wstring& wql) {
  for (const std::wstring_view mark : {L" from ", L" FROM "}) {
    const std::size_t from = wql.find(mark);
    if (from == std::wstring::npos) continue;
    const std::size_t start = from + mark.size();
    return text::ToUtf8(wql.substr(start, wql.find(L' ', start) - start));
  }
  return text::ToUtf8(wql);
}

}  // namespace

FailedQueries::FailedQueries(std::vector<std::string>& failures) {
  shared::wmi::ObserveFailures([&failures](const std::wstring& wql, std::int32_t status) {
    const std::string code = StatusText(static_cast<std::uint32_t>(status));
    AddOnce("Error while querying " + TableOf(wql) + " (status " + code + ")", failures);
  });
}

FailedQueries::~FailedQueries() {
  shared::wmi::ObserveFailures({});
}

}  // namespace zt::telemetry::host::inspection
