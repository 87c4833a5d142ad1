#include "platform/system_loader.h"

#include <dlfcn.h>

namespace zt::telemetry::collector::performancesamples::platform {

void ModuleCloser::operator()(void* module) const {
  ::dlclose(module);
}

UniqueModule LoadModule(const std::filesystem::path& file) {
  return UniqueModule(::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL));
}

UniqueModule SearchModule(const std::filesystem::path& name, std::uint32_t /*search_flags*/) {
  return LoadModule(name);
}

void* FindExport(void* module, const char* name) {
  return ::dlsym(module, name);
}

}  // namespace zt::telemetry::collector::performancesamples::platform
