#pragma once

#include <filesystem>

#include "base/loaded_library.h"

namespace zt::telemetry::host {

/// End of a shared library's file name on this system, ".dll" or ".so".
extern const char kLibrarySuffix[];

/// A shared library in the address space of the program: loaded by the constructor, released by the destructor.
class LoadedLibrary {
 public:
  /// `file`: absolute path. The libraries that it needs are looked for beside it and beside the program. Throws
  /// `Failure` that tells the system's reason.
  explicit LoadedLibrary(const std::filesystem::path& file);

  /// Address of an exported name, null when the file exports no such name.
  void* Find(const char* name) const { return library_.FindAddress(name); }

 private:
  base::LoadedLibrary library_;
};

}  // namespace zt::telemetry::host
