#include "simulation/library_folder.h"

#include <windows.h>

#include <string>

namespace zt::simulation {
namespace {

constexpr std::size_t kLongestPath = 32768;
constexpr DWORD kByAddressUncounted =
    GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;

}  // namespace

std::filesystem::path LibraryFolder() {
  static const char address = 0;
  HMODULE module = nullptr;
  if (::GetModuleHandleExW(kByAddressUncounted, reinterpret_cast<const wchar_t*>(&address), &module) == FALSE)
    return {};
  std::wstring path(kLongestPath, L'\0');
  path.resize(::GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
  return std::filesystem::path(path).parent_path();
}

}  // namespace zt::simulation
