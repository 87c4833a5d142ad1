#include "default_folder.h"

#include <shlobj.h>
#include <windows.h>

#include <memory>

namespace zt::shared {
namespace {

struct CoTaskMemDeleter {
  void operator()(wchar_t* memory) const { ::CoTaskMemFree(memory); }
};

std::string ToUtf8(const wchar_t* text) {
  const int size = ::WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  if (size <= 1) return {};
  std::string result(static_cast<std::size_t>(size) - 1, '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, text, -1, result.data(), size, nullptr, nullptr);
  return result;
}

}  // namespace

const char kPathSeparator = '\\';

std::string DefaultFolder() {
  wchar_t* found = nullptr;
  const HRESULT status = ::SHGetKnownFolderPath(FOLDERID_ProgramData, KF_FLAG_DEFAULT, nullptr, &found);
  const std::unique_ptr<wchar_t, CoTaskMemDeleter> owner(found);
  if (FAILED(status)) return R"(C:\ProgramData\zt\telemetry\)";
  return ToUtf8(found) + R"(\zt\telemetry\)";
}

}  // namespace zt::shared
