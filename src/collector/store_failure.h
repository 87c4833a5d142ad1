#pragma once

#include <string_view>

#include "zt/telemetry/common/error.h"

namespace zt::telemetry::collector::performancesamples {

/// How a record of the host's store is called in what is told of it. The contract library would give the type's name as
/// well, but makes its descriptions of all records for that, and ends the process where it finds no memory for them.
struct StoredRecordNames {
  std::string_view type;
  std::string_view short_name;
};

inline constexpr StoredRecordNames kAmdPmfNames = {"zt.telemetry.contract.storage.device_performance.AmdPmfSamples",
                                                   "amd_pmf"};

/// What is kept of a failed hand-over of a record to the host's store: the code and description of `cause`, under the
/// record's type, with a message that names the record by its short name.
common::Error StoreFailure(const common::Error& cause, const StoredRecordNames& record);

}  // namespace zt::telemetry::collector::performancesamples
