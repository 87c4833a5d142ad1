#include "host/loaded_library.h"

#include <dlfcn.h>

#include "host/failure.h"
#include "host/program_environment.h"

namespace zt::telemetry::host {

const char kLibrarySuffix[] = ".so";

void LoadedLibrary::Release::operator()(void* handle) const {
  ::dlclose(handle);
}

LoadedLibrary::LoadedLibrary(const std::filesystem::path& file)
    : handle_(::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (handle_ != nullptr) return;
  const char* const reason = ::dlerror();
  throw WrongUsage("cannot load " + PathText(file) + ": " + (reason != nullptr ? reason : "no reason given"));
}

void* LoadedLibrary::Find(const char* name) const {
  return ::dlsym(handle_.get(), name);
}

}  // namespace zt::telemetry::host
