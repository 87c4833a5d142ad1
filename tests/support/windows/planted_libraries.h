#pragma once

#include <windows.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/temporary_folder.h"

namespace zt::tests {

/// A folder with libraries of the names that somebody may plant, for as long as it lives. Each of them leaves a mark
/// when it is loaded.
class PlantedLibraries {
 public:
  PlantedLibraries() { std::filesystem::copy(ZT_PLANTED_LIBRARIES, folder_.Path()); }

  std::filesystem::path File(const std::string& name) const { return folder_.Path() / name; }

  std::vector<std::string> Names() const { return FilesWith(".dll"); }
  /// The marks of those that were loaded.
  std::vector<std::string> Marks() const { return FilesWith(".loaded"); }

  /// Makes the folder the current one, and the first of the search path.
  void BecomeCurrent() const {
    std::filesystem::current_path(folder_.Path());
    constexpr DWORD kCapacity = 32'767;
    std::wstring path(kCapacity, L'\0');
    path.resize(::GetEnvironmentVariableW(L"PATH", path.data(), kCapacity));
    if (!::SetEnvironmentVariableW(L"PATH", (folder_.Path().wstring() + L';' + path).c_str())) {
      throw std::runtime_error("the search path could not be set");
    }
  }

 private:
  std::vector<std::string> FilesWith(const std::string& extension) const {
    std::vector<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(folder_.Path())) {
      if (file.path().extension() == extension) names.push_back(file.path().filename().string());
    }
    return names;
  }

  TemporaryFolder folder_;
};

}  // namespace zt::tests
