#include "host/loaded_library.h"

#include <dlfcn.h>

#include "host/failure.h"
#include "host/program_environment.h"

namespace zt::telemetry::host {

const char kLibrarySuffix[] = ".so";

LoadedLibrary::LoadedLibrary(const std::filesystem::path& file) : library_(base::LoadedLibrary::OfFile(file)) {
  if (library_) return;
  const char* const reason = ::dlerror();
  throw WrongUsage("cannot load " + PathText(file) + ": " + (reason != nullptr ? reason : "no reason given"));
}

}  // namespace zt::telemetry::host
