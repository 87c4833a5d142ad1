#include "../plugin_library.h"

#include <windows.h>

// With these flags the libraries beside the plugin are found, and nowhere else what somebody has planted.
PluginLibrary OpenPlugin(const char* full_path) {
  const HMODULE library =
      LoadLibraryExA(full_path, nullptr, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
  if (library == nullptr) return {};
  return {reinterpret_cast<void*>(GetProcAddress(library, "LoadPlugin")),
          reinterpret_cast<void*>(GetProcAddress(library, "ztSharedInitializeLogger"))};
}
