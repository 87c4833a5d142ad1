#include "base/loaded_library.h"

#include <windows.h>

namespace zt::base {

void LoadedLibrary::Closer::operator()(void* module) const {
  ::FreeLibrary(static_cast<HMODULE>(module));
}

LoadedLibrary LoadedLibrary::OfFile(const std::filesystem::path& file) {
  // With a name alone these flags would search: only a full path says which library is meant.
  if (!file.is_absolute()) return {};
  return Search(file, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
}

LoadedLibrary LoadedLibrary::OfSystem(const std::filesystem::path& name) {
  return Search(name, LOAD_LIBRARY_SEARCH_SYSTEM32);
}

LoadedLibrary LoadedLibrary::Search(const std::filesystem::path& name, std::uint32_t search_flags) {
  return LoadedLibrary(::LoadLibraryExW(name.c_str(), nullptr, search_flags));
}

void* LoadedLibrary::FindAddress(const char* name) const {
  if (module_ == nullptr) return nullptr;
  return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(module_.get()), name));
}

}  // namespace zt::base
