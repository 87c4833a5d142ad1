#pragma once

#include <filesystem>
#include <fstream>
#include <ostream>
#include <string_view>

namespace zt::telemetry::host {

/// A file that arrives whole or not at all: it is written beside its place under another name, and put there by
/// `Finish`, on the disk by then. Until then, and for good where it never comes to that, what was there before stays.
/// What is no ordinary file (a pipe, a device) is written to as it is.
class WholeFile {
 public:
  /// `option` names the file in errors. Throws `Failure` with wrong usage that tells the reason.
  WholeFile(const std::filesystem::path& file, std::string_view option);
  ~WholeFile();
  WholeFile(const WholeFile&) = delete;
  WholeFile& operator=(const WholeFile&) = delete;

  std::ostream& Stream() { return stream_; }

  /// Throws `Failure` when it cannot be written or put in its place.
  void Finish();

 private:
  std::filesystem::path file_;
  std::filesystem::path written_;  // where it lies until it is whole
  std::ofstream stream_;
  bool finished_ = false;
};

}  // namespace zt::telemetry::host
