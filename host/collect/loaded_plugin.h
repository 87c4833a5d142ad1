#pragma once

#include <plog/Severity.h>

#include <cstdint>
#include <filesystem>
#include <memory>

#include "host/loaded_library.h"
#include "zt/shared/plugin/plugin_module.h"
#include "zt/telemetry/common/error.h"

namespace plog {
class IAppender;
}

namespace zt::telemetry::host {

/// A collector plugin, reached by its exported names only, and the one module object that it was asked for.
class LoadedPlugin {
 public:
  /// Loads `file` and connects its log to `appender`, which must stay alive for as long as the process. Throws
  /// `Failure` with wrong usage when the file is missing, cannot be loaded or is no plugin.
  LoadedPlugin(const std::filesystem::path& file, plog::Severity log_level, plog::IAppender& appender);

  /// Runs the module once with `event_type`. Returns the outcome that it reports; a report that cannot be understood is
  /// an `Error` as well.
  common::Error Execute(std::int32_t event_type);

 private:
  LoadedLibrary library_;
  std::unique_ptr<shared::plugin::IDynamicPluginModule> module_;  // its code is the library's: released first
};

/// The plugin beside the program.
std::filesystem::path DefaultPluginFile();

}  // namespace zt::telemetry::host
