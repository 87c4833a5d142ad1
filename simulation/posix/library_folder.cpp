#include "simulation/library_folder.h"

#include <dlfcn.h>

namespace zt::simulation {

std::filesystem::path LibraryFolder() {
  static const char address = 0;
  Dl_info info{};
  if (::dladdr(&address, &info) == 0 || info.dli_fname == nullptr) return {};
  return std::filesystem::absolute(info.dli_fname).parent_path();
}

}  // namespace zt::simulation
