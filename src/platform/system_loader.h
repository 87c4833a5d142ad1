#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

/// The operating system's loader of shared libraries, the same one for every machine.
namespace zt::telemetry::collector::performancesamples::platform {

struct ModuleCloser {
  void operator()(void* module) const;
};

/// Owns one reference to a loaded library.
using UniqueModule = std::unique_ptr<void, ModuleCloser>;

/// Loads the library of this full path; what it needs itself is looked for in its own folder and in the system's. Null
/// when there is none, or it cannot be loaded.
UniqueModule LoadModule(const std::filesystem::path& file);

/// Loads a library by its name. `search_flags`: where to look, as `LoadLibraryExW` takes it; other systems look where
/// they always do. Null when there is none, or it cannot be loaded.
UniqueModule SearchModule(const std::filesystem::path& name, std::uint32_t search_flags);

/// The address of what `module` exports as `name`; null when it exports nothing of that name.
void* FindExport(void* module, const char* name);

}  // namespace zt::telemetry::collector::performancesamples::platform
