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
    SetVariable(L"PATH", folder_.Path().wstring() + L';' + path);
  }

  /// Has the folder stand in the place of the system's and the programs' folders in the environment, with the libraries
  /// where they would be looked for below these.
  void BecomeTheSystems() const {
    for (const char* below : {"System32", "NVIDIA Corporation/NVSMI"}) {
      std::filesystem::create_directories(folder_.Path() / below);
      std::filesystem::copy(ZT_PLANTED_LIBRARIES, folder_.Path() / below);
    }
    for (const wchar_t* name : {L"SystemRoot", L"windir", L"ProgramFiles", L"ProgramW6432", L"ProgramData",
                                L"ALLUSERSPROFILE", L"CommonProgramFiles", L"APPDATA", L"LOCALAPPDATA"}) {
      SetVariable(name, folder_.Path().wstring());
    }
  }

 private:
  static void SetVariable(const wchar_t* name, const std::wstring& value) {
    if (!::SetEnvironmentVariableW(name, value.c_str())) throw std::runtime_error("the environment could not be set");
  }

  std::vector<std::string> FilesWith(const std::string& extension) const {
    std::vector<std::string> names;
    for (const auto& file : std::filesystem::recursive_directory_iterator(folder_.Path())) {
      if (file.path().extension() == extension) names.push_back(file.path().filename().string());
    }
    return names;
  }

  TemporaryFolder folder_;
};

}  // namespace zt::tests
