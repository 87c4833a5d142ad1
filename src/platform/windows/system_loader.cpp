#include "platform/system_loader.h"

#include <windows.h>

namespace zt::telemetry::collector::performancesamples::platform {

void ModuleCloser::operator()(void* module) const {
  ::FreeLibrary(static_cast<HMODULE>(module));
}

UniqueModule LoadModule(const std::filesystem::path& file) {
  // With a name alone these flags would search: only a full path says which library is meant.
  if (!file.is_absolute()) return nullptr;
  return SearchModule(file, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
}

UniqueModule SearchModule(const std::filesystem::path& name, std::uint32_t search_flags) {
  return UniqueModule(::LoadLibraryExW(name.c_str(), nullptr, search_flags));
}

void* FindExport(void* module, const char* name) {
  return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(module), name));
}

}  // namespace zt::telemetry::collector::performancesamples::platform
