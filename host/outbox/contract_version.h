#pragma once

namespace zt::telemetry::host {

/// Of the records in `contracts/`, kept beside each of them: who reads a record years later knows what its fields
/// meant.
inline constexpr char kContractVersion[] = "1.0";

}  // namespace zt::telemetry::host
