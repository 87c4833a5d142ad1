#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

namespace zt::base {

/// Owns one reference to a shared library: loaded for as long as this object lives. It may be missing.
class LoadedLibrary {
 public:
  /// No library.
  LoadedLibrary() = default;

  /// The library of this full path; what it needs itself is looked for in its own folder and in the system's.
  /// (Elsewhere than on Windows a bare name is one that the system knows.)
  static LoadedLibrary OfFile(const std::filesystem::path& file);

  /// The system's own library of this name.
  static LoadedLibrary OfSystem(const std::filesystem::path& name);

  /// A library by its name. `search_flags`: where to look, as `LoadLibraryExW` takes it; other systems look where they
  /// always do. Where there is none, the system's last error (its loader's, elsewhere) says why.
  static LoadedLibrary Search(const std::filesystem::path& name, std::uint32_t search_flags);

  /// False when the library is missing or cannot be loaded.
  explicit operator bool() const { return module_ != nullptr; }

  /// The function that the library exports as `name`. Null when the library is missing or exports none of that name;
  /// that it is of this type is the caller's word.
  template <typename Function>
  Function* Find(const char* name) const {
    return reinterpret_cast<Function*>(FindAddress(name));
  }
  void* FindAddress(const char* name) const;

  /// Gives the library up to the process, which keeps it until its end.
  void StayLoaded() && { static_cast<void>(module_.release()); }

 private:
  struct Closer {
    void operator()(void* module) const;
  };

  explicit LoadedLibrary(void* module) : module_(module) {}

  std::unique_ptr<void, Closer> module_;
};

}  // namespace zt::base
