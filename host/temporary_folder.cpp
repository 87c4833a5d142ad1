#include "host/temporary_folder.h"

#include <cstdint>
#include <random>
#include <string>
#include <system_error>

namespace zt::telemetry::host {
namespace {

namespace fs = std::filesystem;

std::string RandomName() {
  std::random_device random;
  return "zt-telemetry-host." + std::to_string(random()) + "." + std::to_string(random());
}

// A folder of that name that is there already is somebody else's.
fs::path MakeNew(const fs::path& parent) {
  fs::path folder = parent / RandomName();
  while (!fs::create_directory(folder)) folder = parent / RandomName();
  return folder;
}

}  // namespace

TemporaryFolder::TemporaryFolder(const fs::path& parent) : path_(MakeNew(parent)) {
  std::error_code ignored;  // where a file system has no rights, the parent's hold
  fs::permissions(path_, fs::perms::owner_all, ignored);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

}  // namespace zt::telemetry::host
