#pragma once

#include "host/files.h"
#include "host/temporary_folder.h"
#include "zt/shared/telemetry_storage.h"

namespace zt::telemetry::host {

/// As long as it lives, collections find no stored samples, and so take none: they work in an empty folder.
class NoStoredSamples {
 public:
  NoStoredSamples() { shared::TelemetryStorage::SetDefaultDBPath(ToText(folder_.Path())); }
  ~NoStoredSamples() { shared::TelemetryStorage::SetDefaultDBPath(""); }
  NoStoredSamples(const NoStoredSamples&) = delete;
  NoStoredSamples& operator=(const NoStoredSamples&) = delete;

 private:
  TemporaryFolder folder_;
};

}  // namespace zt::telemetry::host
