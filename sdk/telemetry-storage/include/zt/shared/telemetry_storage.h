#pragma once

#include <string>

#include "zt/zt_storage_export.h"

namespace zt::shared {

/// A named database of the host's storage, and the folder that all of them lie in.
class ZT_STORAGE_EXPORT TelemetryStorage {
 public:
  /// `database`: file name inside the default folder. `key`: encryption key of the database, empty for a plain one.
  /// Nothing is opened.
  TelemetryStorage(std::string database, std::string key);

  const std::string& Database() const { return database_; }

  /// Folder of the host's databases, UTF-8, ending in a path separator so that a file name can be appended. Unless the
  /// host set another one: "zt\telemetry\" below the program-data folder. The text belongs to the library and is valid
  /// until the next `SetDefaultDBPath`.
  static const char* GetDefaultDBPath();

  /// Sets the folder, UTF-8; a missing separator at its end is added. An empty text restores the default. For the host,
  /// before its first collection.
  static void SetDefaultDBPath(const std::string& folder);

 private:
  std::string database_;
  std::string key_;
};

}  // namespace zt::shared
