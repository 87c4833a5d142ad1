#include "../plugin_library.h"

#include <dlfcn.h>

PluginLibrary OpenPlugin(const char* full_path) {
  void* const library = dlopen(full_path, RTLD_NOW);
  if (library == nullptr) return {};
  return {dlsym(library, "LoadPlugin"), dlsym(library, "ztSharedInitializeLogger")};
}
