#include "host/loaded_library.h"

#include <windows.h>

#include <string>

#include "host/failure.h"
#include "host/program_environment.h"
#include "zt/text/wide_text.h"

namespace zt::telemetry::host {
namespace {

struct LocalFreeDeleter {
  void operator()(wchar_t* memory) const { ::LocalFree(memory); }
};

std::string SystemMessage(DWORD error) {
  wchar_t* found = nullptr;
  constexpr DWORD kFlags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
  // With FORMAT_MESSAGE_ALLOCATE_BUFFER the call takes the address of the pointer in place of a buffer.
  const DWORD length = ::FormatMessageW(kFlags, nullptr, error, 0, reinterpret_cast<wchar_t*>(&found), 0, nullptr);
  const std::unique_ptr<wchar_t, LocalFreeDeleter> owner(found);
  std::string text = length > 0 ? text::ToUtf8({found, length}) : std::string("no text for this error");
  while (text.ends_with('\n') || text.ends_with('\r') || text.ends_with('.')) text.pop_back();
  return text + " (error " + std::to_string(error) + ")";
}

}  // namespace

const char kLibrarySuffix[] = ".dll";

void LoadedLibrary::Release::operator()(void* handle) const {
  ::FreeLibrary(static_cast<HMODULE>(handle));
}

LoadedLibrary::LoadedLibrary(const std::filesystem::path& file)
    : handle_(::LoadLibraryExW(std::filesystem::path(file).make_preferred().c_str(), nullptr,
                               LOAD_LIBRARY_SEARCH_DEFAULT_DIRS | LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR)) {
  if (handle_ != nullptr) return;
  throw WrongUsage("cannot load " + PathText(file) + ": " + SystemMessage(::GetLastError()));
}

void* LoadedLibrary::Find(const char* name) const {
  return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(handle_.get()), name));
}

}  // namespace zt::telemetry::host
