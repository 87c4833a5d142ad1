#include "tests/disk/child_run.h"

#include <windows.h>

#include <stdexcept>

#include "base/windows/unique_handle.h"
#include "zt/text/wide_text.h"

namespace zt::tests {
namespace {

constexpr UINT kEnded = 0xE0DE;
constexpr DWORD kLongestWaitMs = 60'000;

}  // namespace

void EndThisProcess() {
  ::TerminateProcess(::GetCurrentProcess(), kEnded);
  ::ExitProcess(1);
}

bool RunToItsEnd(const std::string& program, const std::vector<std::string>& arguments) {
  std::wstring command_line = L"\"" + text::ToWide(program) + L"\"";
  for (const std::string& argument : arguments) command_line += L" \"" + text::ToWide(argument) + L"\"";
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION started{};
  if (!::CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &started)) {
    throw std::runtime_error("the program could not be started");
  }
  const base::UniqueHandle process(started.hProcess);
  const base::UniqueHandle thread(started.hThread);
  DWORD code = 1;
  if (::WaitForSingleObject(process.get(), kLongestWaitMs) != WAIT_OBJECT_0 ||
      !::GetExitCodeProcess(process.get(), &code)) {
    throw std::runtime_error("the program could not be waited for");
  }
  if (code == kEnded) return false;
  if (code == 0) return true;
  throw std::runtime_error("the program has ended with code " + std::to_string(code));
}

}  // namespace zt::tests
