#pragma once

#include <cstdint>
#include <filesystem>
#include <utility>

#include "base/loaded_library.h"

namespace zt::telemetry::collector::performancesamples::platform {

/// A library that a driver or a vendor's software brings along, loaded for as long as this object lives. It may be
/// missing.
class Library {
 public:
  /// No library.
  Library() = default;

  /// The library of this full path, and no other of its name. (Elsewhere than on Windows a bare name is one that the
  /// system knows.)
  static Library Load(const std::filesystem::path& file);

  /// The library of this name. `search_flags`: where to look, as `LoadLibraryExW` takes it.
  static Library Search(const std::filesystem::path& name, std::uint32_t search_flags);

  /// False when the library is missing or cannot be loaded.
  explicit operator bool() const { return static_cast<bool>(library_); }

  /// The function that the library exports as `name`. Null when the library is missing or exports none of that name;
  /// that it is of this type is the caller's word.
  template <typename Function>
  Function* Find(const char* name) const {
    return reinterpret_cast<Function*>(FindAddress(name));
  }

  /// Gives the library up to the process, which keeps it until its end.
  void StayLoaded() && { std::move(library_).StayLoaded(); }

 private:
  explicit Library(base::LoadedLibrary library) : library_(std::move(library)) {}
  void* FindAddress(const char* name) const;

  base::LoadedLibrary library_;
};

}  // namespace zt::telemetry::collector::performancesamples::platform
