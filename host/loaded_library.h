#pragma once

#include <filesystem>
#include <memory>

namespace zt::telemetry::host {

/// End of a plugin's file name on this system, ".dll" or ".so".
extern const char kPluginSuffix[];

/// A plugin's file in the address space of the program: loaded by the constructor, released by the destructor.
class PluginLibrary {
 public:
  /// `file`: absolute path. The libraries that the plugin needs are looked for beside the plugin and beside the
  /// program. Throws `Failure` that tells the system's reason.
  explicit PluginLibrary(const std::filesystem::path& file);

  /// Address of an exported name, null when the file exports no such name.
  void* Find(const char* name) const;

 private:
  struct Release {
    void operator()(void* handle) const;
  };
  std::unique_ptr<void, Release> handle_;
};

}  // namespace zt::telemetry::host
