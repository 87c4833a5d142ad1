#include "zt/shared/telemetry_storage.h"

#include <utility>

#include "default_folder.h"

namespace zt::shared {
namespace {

std::string WithSeparator(std::string folder) {
  const std::string separators = {'/', kPathSeparator};
  const std::size_t behind_the_last = folder.find_last_of(separators) + 1;  // 0 without one
  if (behind_the_last != folder.size()) folder += kPathSeparator;
  return folder;
}

std::string& CurrentFolder() {
  static std::string folder = WithSeparator(DefaultFolder());
  return folder;
}

}  // namespace

TelemetryStorage::TelemetryStorage(std::string database, std::string key)
    : database_(std::move(database)), key_(std::move(key)) {}

const char* TelemetryStorage::GetDefaultDBPath() {
  return CurrentFolder().c_str();
}

void TelemetryStorage::SetDefaultDBPath(const std::string& folder) {
  CurrentFolder() = WithSeparator(folder.empty() ? DefaultFolder() : folder);
}

}  // namespace zt::shared
