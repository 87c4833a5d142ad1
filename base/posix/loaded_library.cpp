#include "base/loaded_library.h"

#include <dlfcn.h>

namespace zt::base {

void LoadedLibrary::Closer::operator()(void* module) const {
  ::dlclose(module);
}

LoadedLibrary LoadedLibrary::OfFile(const std::filesystem::path& file) {
  return LoadedLibrary(::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL));
}

LoadedLibrary LoadedLibrary::OfSystem(const std::filesystem::path& name) {
  return OfFile(name);
}

LoadedLibrary LoadedLibrary::Search(const std::filesystem::path& name, std::uint32_t /*search_flags*/) {
  return OfFile(name);
}

void* LoadedLibrary::FindAddress(const char* name) const {
  return module_ != nullptr ? ::dlsym(module_.get(), name) : nullptr;
}

}  // namespace zt::base
