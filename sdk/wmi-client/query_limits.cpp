#include "query_limits.h"

#include <algorithm>
#include <cstddef>

namespace zt::shared::wmi {
namespace {

// In lower case: WQL's keywords and classes are the same in either.
constexpr std::wstring_view kFrom = L" from ";
constexpr std::wstring_view kPerformancePrefix = L"win32_perf";

bool SameIgnoringCase(wchar_t letter, wchar_t lower_case) {
  const bool is_upper = letter >= L'A' && letter <= L'Z';
  return (is_upper ? letter - L'A' + L'a' : letter) == lower_case;
}

bool StartsWith(std::wstring_view text, std::wstring_view lower_case) {
  return text.size() >= lower_case.size() &&
         std::equal(lower_case.begin(), lower_case.end(), text.begin(),
                    [](wchar_t expected, wchar_t letter) { return SameIgnoringCase(letter, expected); });
}

// What follows the first "FROM": the class comes before any text that the query compares with.
std::wstring_view FromClass(std::wstring_view wql) {
  const auto from = std::search(wql.begin(), wql.end(), kFrom.begin(), kFrom.end(), SameIgnoringCase);
  if (from == wql.end()) return {};
  wql.remove_prefix(static_cast<std::size_t>(from - wql.begin()) + kFrom.size());
  wql.remove_prefix(std::min(wql.find_first_not_of(L' '), wql.size()));
  return wql;
}

}  // namespace

base::WaitLimits LimitsOf(std::wstring_view wql) {
  return StartsWith(FromClass(wql), kPerformancePrefix) ? kPerformanceLimits : kOrdinaryLimits;
}

}  // namespace zt::shared::wmi
