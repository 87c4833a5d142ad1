#pragma once

#include <chrono>
#include <filesystem>
#include <random>
#include <string>

namespace zt::tests {

/// An empty folder of the test's own, removed with everything in it at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() : path_(std::filesystem::temp_directory_path() / UniqueName()) {
    std::filesystem::create_directories(path_);
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  /// UTF-8, with a separator at its end.
  std::string Utf8() const { return ToUtf8(path_) + "/"; }
  /// UTF-8 path of a file in the folder.
  std::string File(const std::string& name) const { return Utf8() + name; }

 private:
  static std::string ToUtf8(const std::filesystem::path& path) {
    const std::u8string text = path.generic_u8string();
    return {text.begin(), text.end()};
  }
  static std::string UniqueName() {
    std::random_device random;
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    return "zt-test-" + std::to_string(now) + "-" + std::to_string(random());
  }

  std::filesystem::path path_;
};

}  // namespace zt::tests
