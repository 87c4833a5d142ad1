#pragma once

#include <filesystem>

namespace zt::telemetry::host {

/// Removes from `parent` the folders of this kind in which nothing was written for a day: a program that was ended by
/// force has left them. What cannot be removed stays.
void RemoveOldTemporaryFolders(const std::filesystem::path& parent = std::filesystem::temp_directory_path());

/// A new, empty folder that only the program's user may look into, removed with all that is in it.
class TemporaryFolder {
 public:
  /// Makes it in `parent`. Throws `std::filesystem::filesystem_error`.
  explicit TemporaryFolder(const std::filesystem::path& parent = std::filesystem::temp_directory_path());
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace zt::telemetry::host
