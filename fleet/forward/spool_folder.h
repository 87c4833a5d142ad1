#pragma once

#include <chrono>
#include <filesystem>
#include <vector>

#include "fleet/forward/file_descriptor.h"

namespace zt::telemetry::fleet {

/// The folder into which gateways put files of records. A file is there once it was closed or renamed into it; names
/// that begin with "." or end with ".tmp" or ".partial" are files that are still written.
class SpoolFolder {
 public:
  /// Throws `host::Failure` unless the folder is there, can be written to, and no other process forwards from it.
  explicit SpoolFolder(std::filesystem::path folder);

  const std::filesystem::path& Folder() const { return folder_; }

  /// The files that are there, by name.
  std::vector<std::filesystem::path> Files() const;

  /// Whether the folder has changed since the last call.
  bool HasChanged() const;

 private:
  std::filesystem::path folder_;
  FileDescriptor lock_;
  FileDescriptor watch_;
};

}  // namespace zt::telemetry::fleet
