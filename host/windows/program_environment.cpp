#include "host/program_environment.h"

#include <windows.h>
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>
#include <shlobj.h>
#include <stdio.h>

#include <system_error>

#include "base/windows/system_memory.h"
#include "base/windows/unique_handle.h"
#include "zt/text/wide_text.h"

namespace zt::telemetry::host {
namespace {

// Where Wine shows the Unix machine's files.
const std::wstring kUnixDrive = L"Z:";

// Wine tells itself by a function that Windows does not have.
bool RunsUnderWine() {
  const HMODULE system = ::GetModuleHandleW(L"ntdll.dll");
  return system != nullptr && ::GetProcAddress(system, "wine_get_version") != nullptr;
}

// The C library takes the null device for a terminal as well.
bool IsConsole(DWORD stream) {
  DWORD mode = 0;
  return ::GetConsoleMode(::GetStdHandle(stream), &mode) != FALSE;
}

}  // namespace

std::vector<std::string> ProgramArguments(int, char**) {
  int count = 0;
  const base::UniqueLocalMemory<wchar_t*> values(::CommandLineToArgvW(::GetCommandLineW(), &count));
  std::vector<std::string> arguments;
  for (int i = 1; values != nullptr && i < count; ++i) arguments.push_back(text::ToUtf8(values.get()[i]));
  return arguments;
}

std::filesystem::path ProgramFile() {
  std::wstring file(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = ::GetModuleFileNameW(nullptr, file.data(), static_cast<DWORD>(file.size()));
    if (length == 0) {
      throw std::system_error(static_cast<int>(::GetLastError()), std::system_category(), "GetModuleFileNameW");
    }
    if (length < file.size()) {
      file.resize(length);
      return file;
    }
    file.resize(file.size() * 2);
  }
}

// Beside the stored samples.
std::filesystem::path DefaultConfigurationFile() {
  wchar_t* found = nullptr;
  const HRESULT status = ::SHGetKnownFolderPath(FOLDERID_ProgramData, KF_FLAG_DEFAULT, nullptr, &found);
  const base::UniqueTaskMemory<wchar_t> owner(found);
  if (FAILED(status)) throw std::system_error(status, std::system_category(), "the folder for programs' data");
  return std::filesystem::path(found) / L"zt" / L"telemetry" / L"zt-telemetry-host.toml";
}

// A path that starts with a slash is one of the Unix machine's, whatever the current drive is.
std::filesystem::path PathFromText(std::string_view text) {
  const std::wstring path = text::ToWide(text);
  const bool rooted = path.starts_with(L'/') && !path.starts_with(L"//");
  return rooted && RunsUnderWine() ? kUnixDrive + path : path;
}

std::string PathText(const std::filesystem::path& path) {
  if (!RunsUnderWine()) return text::ToUtf8(std::filesystem::path(path).make_preferred().native());
  const std::string unix_path = text::ToUtf8(path.generic_wstring());
  return path.root_name() == kUnixDrive ? unix_path.substr(kUnixDrive.size()) : unix_path;
}

void Sync(const std::filesystem::path& file) {
  const base::UniqueHandle opened =
      base::OwnFile(::CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (opened == nullptr || ::FlushFileBuffers(opened.get()) == FALSE) {
    throw std::system_error(static_cast<int>(::GetLastError()), std::system_category(), PathText(file));
  }
}

// Who reads the file at that moment, without allowing others to take it away, makes the exchange fail: they are waited
// for a little.
void PutInPlace(const std::filesystem::path& file, const std::filesystem::path& place) {
  constexpr int kAttempts = 20;
  constexpr DWORD kBetweenMs = 50;
  for (int attempt = 1;; ++attempt) {
    if (::MoveFileExW(file.c_str(), place.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE) return;
    const DWORD error = ::GetLastError();
    const bool in_use = error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED;
    if (!in_use || attempt == kAttempts) {
      throw std::system_error(static_cast<int>(error), std::system_category(), PathText(place));
    }
    ::Sleep(kBetweenMs);
  }
}

bool OutputGoesToTerminal() {
  return IsConsole(STD_OUTPUT_HANDLE);
}

bool ErrorsGoToTerminal() {
  return IsConsole(STD_ERROR_HANDLE);
}

Utf8Streams::Utf8Streams() : previous_code_page_(::GetConsoleOutputCP()) {
  ::SetConsoleOutputCP(CP_UTF8);
  ::_setmode(::_fileno(stdout), _O_BINARY);
  ::_setmode(::_fileno(stderr), _O_BINARY);
}

// A process without a console has no code page to give back.
Utf8Streams::~Utf8Streams() {
  if (previous_code_page_ != 0) ::SetConsoleOutputCP(previous_code_page_);
}

}  // namespace zt::telemetry::host
