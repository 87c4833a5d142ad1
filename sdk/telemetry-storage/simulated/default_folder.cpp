#include "default_folder.h"

#include <filesystem>
#include <system_error>

namespace zt::shared {

const char kPathSeparator = static_cast<char>(std::filesystem::path::preferred_separator);

// A simulated machine has no program-data folder: the folder for temporary files stands in for it.
std::string DefaultFolder() {
  std::error_code ignored;
  const std::u8string folder = (std::filesystem::temp_directory_path(ignored) / "zt" / "telemetry" / "").u8string();
  return {folder.begin(), folder.end()};
}

}  // namespace zt::shared
