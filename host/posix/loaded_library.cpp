#include "host/plugin_library.h"

#include <dlfcn.h>

#include "host/failure.h"
#include "host/program_environment.h"

namespace zt::telemetry::host {

const char kPluginSuffix[] = ".so";

void PluginLibrary::Release::operator()(void* handle) const {
  ::dlclose(handle);
}

PluginLibrary::PluginLibrary(const std::filesystem::path& file)
    : handle_(::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (handle_ != nullptr) return;
  const char* const reason = ::dlerror();
  throw WrongUsage("cannot load the plugin " + PathText(file) + ": " +
                   (reason != nullptr ? reason : "no reason given"));
}

void* PluginLibrary::Find(const char* name) const {
  return ::dlsym(handle_.get(), name);
}

}  // namespace zt::telemetry::host
