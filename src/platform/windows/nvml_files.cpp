#include "platform/nvml_files.h"

#include <windows.h>
#include <shlobj.h>

#include "base/windows/system_memory.h"

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

constexpr wchar_t kFileName[] = L"nvml.dll";
constexpr wchar_t kClassicFolder[] = LR"(NVIDIA Corporation\NVSMI)";

// Not from the environment, which whoever starts the host can change.
std::filesystem::path KnownFolder(const KNOWNFOLDERID& folder) {
  wchar_t* found = nullptr;
  const HRESULT status = ::SHGetKnownFolderPath(folder, KF_FLAG_DEFAULT, nullptr, &found);
  const base::UniqueTaskMemory<wchar_t> owner(found);
  return FAILED(status) ? std::filesystem::path() : std::filesystem::path(found);
}

}  // namespace

std::vector<std::filesystem::path> NvmlFiles() {
  std::vector<std::filesystem::path> files;
  const std::filesystem::path system = KnownFolder(FOLDERID_System);
  if (!system.empty()) files.push_back(system / kFileName);
  const std::filesystem::path program_files = KnownFolder(FOLDERID_ProgramFilesX64);
  if (!program_files.empty()) files.push_back(program_files / kClassicFolder / kFileName);
  return files;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
