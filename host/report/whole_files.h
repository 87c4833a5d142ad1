#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zt::telemetry::host {

/// Files that come to be together: each is written under another name beside its own, and all get their names once the
/// last one is on the disk. What fails before leaves no file behind, and those that were there as they were.
class WholeFiles {
 public:
  WholeFiles() = default;
  ~WholeFiles();
  WholeFiles(const WholeFiles&) = delete;
  WholeFiles& operator=(const WholeFiles&) = delete;

  /// Throws `Failure` that names `file`: with wrong usage when it cannot be made, as failed when it cannot be filled.
  void Add(const std::filesystem::path& file, const std::string& bytes);

  /// Throws `Failure` when a file cannot get its name.
  void Commit();

 private:
  struct Waiting {
    std::filesystem::path partial;
    std::filesystem::path file;
  };

  std::vector<Waiting> waiting_;
};

}  // namespace zt::telemetry::host
