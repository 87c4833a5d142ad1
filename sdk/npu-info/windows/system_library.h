#pragma once

#include <windows.h>

namespace zt::shared::npu {

/// A library of the system, loaded for as long as this object lives; it may be missing.
class SystemLibrary {
 public:
  explicit SystemLibrary(const wchar_t* name)
      : module_(::LoadLibraryExW(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)) {}
  ~SystemLibrary() {
    if (module_ != nullptr) ::FreeLibrary(module_);
  }
  SystemLibrary(const SystemLibrary&) = delete;
  SystemLibrary& operator=(const SystemLibrary&) = delete;

  /// Null when the library or the function is missing.
  template <typename Function>
  Function* Find(const char* name) const {
    if (module_ == nullptr) return nullptr;
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(module_, name)));
  }

 private:
  HMODULE module_;
};

}  // namespace zt::shared::npu
