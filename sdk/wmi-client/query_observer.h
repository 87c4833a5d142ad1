#pragma once

#include <cstdint>
#include <string>

namespace zt::shared::wmi {

/// Tells the observer of queries, where there is one, that `wql` is about to run.
void AnnounceQuery(const std::wstring& wql);

/// Tells the observer of failures, where there is one, when `wql` ended with a status other than success. Returns the
/// status.
std::int32_t ReportStatus(const std::wstring& wql, std::int32_t status);

}  // namespace zt::shared::wmi
