#pragma once

#include <string>

namespace zt::telemetry::host {

/// Of the records in `contracts/`, as contract_annotations.proto has it. Kept beside each record.
std::string ContractVersion();

}  // namespace zt::telemetry::host
