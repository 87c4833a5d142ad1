#pragma once

#include <filesystem>

#include "host/inspection/source_report.h"

namespace zt::telemetry::host {

/// Looks into "ssm.db" of `folder` without changing it: absent when there is no such file, failed when it cannot be
/// read or has not both tables, else how many samples wait for the next collection.
inspection::SourceReport InspectStoredSamples(const std::filesystem::path& folder);

}  // namespace zt::telemetry::host
