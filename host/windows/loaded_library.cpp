#include "host/loaded_library.h"

#include <windows.h>

#include <string>

#include "base/windows/system_memory.h"
#include "host/failure.h"
#include "host/program_environment.h"
#include "zt/text/wide_text.h"

namespace zt::telemetry::host {
namespace {

std::string SystemMessage(DWORD error) {
  wchar_t* found = nullptr;
  constexpr DWORD kFlags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
  // With FORMAT_MESSAGE_ALLOCATE_BUFFER the call takes the address of the pointer in place of a buffer.
  const DWORD length = ::FormatMessageW(kFlags, nullptr, error, 0, reinterpret_cast<wchar_t*>(&found), 0, nullptr);
  const base::UniqueLocalMemory<wchar_t> owner(found);
  std::string text = length > 0 ? text::ToUtf8({found, length}) : std::string("no text for this error");
  while (text.ends_with('\n') || text.ends_with('\r') || text.ends_with('.')) text.pop_back();
  return text + " (error " + std::to_string(error) + ")";
}

}  // namespace

const char kLibrarySuffix[] = ".dll";

LoadedLibrary::LoadedLibrary(const std::filesystem::path& file)
    : library_(base::LoadedLibrary::Search(std::filesystem::path(file).make_preferred(),
                                           LOAD_LIBRARY_SEARCH_DEFAULT_DIRS | LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR)) {
  // Read first: nothing may come between the failed call and its reason.
  const DWORD error = ::GetLastError();
  if (!library_) throw WrongUsage("cannot load " + PathText(file) + ": " + SystemMessage(error));
}

}  // namespace zt::telemetry::host
