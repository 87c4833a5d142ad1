#pragma once

#include <cstdint>
#include <string>

#include "zt/shared/wmi/wmi_client.h"

namespace zt::telemetry::collector::performancesamples {

/// The status of a query that nobody can run, since the builder has no client: E_POINTER.
inline constexpr std::int32_t kNoClient = static_cast<std::int32_t>(0x80004003);

/// Runs `wql` and returns its status. `client` may be null: the query then fails like any other, with `kNoClient`.
std::int32_t RunQuery(shared::wmi::WMIClient* client, const std::wstring& wql);

/// Throws `Error` (kind 5) with `status` as code and `description` as text when a query's status tells of a failure.
void RequireSuccess(std::int32_t status, const std::string& description);

}  // namespace zt::telemetry::collector::performancesamples
