#include "host/temporary_folder.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <system_error>

#include "host/files.h"

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kNameStart = "zt-telemetry-host.";

std::string RandomName() {
  std::random_device random;
  return std::string(kNameStart) + std::to_string(random()) + "." + std::to_string(random());
}

// A folder of that name that is there already is somebody else's.
fs::path MakeNew(const fs::path& parent) {
  fs::path folder = parent / RandomName();
  while (!fs::create_directory(folder)) folder = parent / RandomName();
  return folder;
}

// When a file in it was written last, of an empty folder when it was made.
fs::file_time_type LastWritten(const fs::path& folder, std::error_code& error) {
  std::optional<fs::file_time_type> last;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const fs::file_time_type written = entry->last_write_time(error);
    last = std::max(last.value_or(written), written);
  }
  return last.has_value() || error ? last.value_or(fs::file_time_type::max()) : fs::last_write_time(folder, error);
}

}  // namespace

void RemoveOldTemporaryFolders(const fs::path& parent) {
  const fs::file_time_type oldest = fs::file_time_type::clock::now() - std::chrono::days(1);
  std::error_code error;
  for (fs::directory_iterator entry(parent, error), end; !error && entry != end; entry.increment(error)) {
    std::error_code stays;
    const bool is_ours = ToText(entry->path().filename()).starts_with(kNameStart) &&
                         entry->symlink_status(stays).type() == fs::file_type::directory;
    if (is_ours && LastWritten(entry->path(), stays) < oldest && !stays) fs::remove_all(entry->path(), stays);
  }
}

TemporaryFolder::TemporaryFolder(const fs::path& parent) : path_(MakeNew(parent)) {
  std::error_code ignored;  // where a file system has no rights, the parent's hold
  fs::permissions(path_, fs::perms::owner_all, ignored);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

}  // namespace zt::telemetry::host
