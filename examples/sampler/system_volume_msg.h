#pragma once

#include <filesystem>

#include "messages/perf_messages.h"

/// Adds one entry to the storage drives of the record: the volume that a folder lies on, with its used share.
class SystemVolumeMsg : public zt::telemetry::collector::performancesamples::PerfMessages {
 public:
  explicit SystemVolumeMsg(std::filesystem::path folder);

  /// Throws `std::filesystem::filesystem_error` where the system does not tell the volume's size.
  void PopulateStorageAndUploadProtos() override;

 private:
  std::filesystem::path folder_;
};
