#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include "host/loaded_library.h"
#include "host/program_environment.h"
#include "zt/shared/plugin/plugin_module.h"

namespace zt::tests {

/// Stands in the outcome of a cycle without a failure.
inline constexpr char kSuccess[] = R"("kind":0)";

/// The folder of the plugin and its libraries, which is not this program's.
inline std::filesystem::path PluginFolder() {
  return telemetry::host::ProgramFile().parent_path().parent_path();
}

inline std::filesystem::path PluginFile() {
  return PluginFolder() / ZT_PLUGIN;
}

/// protobuf's library, the same one that the plugin uses.
inline std::filesystem::path ProtobufFile() {
  return PluginFolder() / ZT_PROTOBUF;
}

/// The plugin in a host that calls its module object through the table alone; unloaded at the end of its life.
class BarePlugin {
 public:
  BarePlugin() : library_(PluginFile()) {
    using LoadPluginFunction = shared::plugin::IDynamicPluginModule*();
    auto* const load = reinterpret_cast<LoadPluginFunction*>(library_.Find("LoadPlugin"));
    if (load == nullptr) throw std::runtime_error("the plugin exports no LoadPlugin");
    module_.reset(load());
  }

  /// Runs a scheduled collection; returns the outcome as the plugin reports it.
  std::string Collect() {
    std::string result(shared::plugin::IPluginModule::kResultCapacity, '\0');
    module_->Execute(R"({"eventType": 50})", result.data());
    return result.c_str();
  }

 private:
  telemetry::host::LoadedLibrary library_;
  std::unique_ptr<shared::plugin::IDynamicPluginModule> module_;  // its code is the library's: released first
};

}  // namespace zt::tests
