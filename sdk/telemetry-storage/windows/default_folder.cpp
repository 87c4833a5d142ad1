#include "default_folder.h"

#include <windows.h>
#include <shlobj.h>
#include <zt/text/wide_text.h>

#include "base/windows/system_memory.h"

namespace zt::shared {
namespace {

constexpr char kUsualProgramData[] = R"(C:\ProgramData)";
constexpr char kOwnFolder[] = R"(\zt\telemetry\)";

std::string ProgramData() {
  wchar_t* found = nullptr;
  const HRESULT status = ::SHGetKnownFolderPath(FOLDERID_ProgramData, KF_FLAG_DEFAULT, nullptr, &found);
  const base::UniqueTaskMemory<wchar_t> owner(found);
  return FAILED(status) ? kUsualProgramData : text::ToUtf8(found);
}

}  // namespace

const char kPathSeparator = '\\';

std::string DefaultFolder() {
  return ProgramData() + kOwnFolder;
}

}  // namespace zt::shared
