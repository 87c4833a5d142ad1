#include "support/child_run.h"

#include <windows.h>

#include <stdexcept>

#include "base/windows/unique_handle.h"
#include "zt/text/wide_text.h"

namespace zt::tests {
namespace {

constexpr UINT kEnded = 0xE0DE;
constexpr DWORD kLongestWaitMs = 60'000;

base::UniqueHandle Start(std::wstring command_line) {
  STARTUPINFOW start{};
  start.cb = sizeof start;
  PROCESS_INFORMATION started{};
  if (!::CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &started)) {
    throw std::runtime_error("the program could not be started: error " + std::to_string(::GetLastError()));
  }
  const base::UniqueHandle thread(started.hThread);
  return base::UniqueHandle(started.hProcess);
}

}  // namespace

void EndThisProcess() {
  ::TerminateProcess(::GetCurrentProcess(), kEnded);
  // Not reached: a process that has ended itself so runs no more.
  ::ExitProcess(1);
}

// What it is told has no quotation marks, nor a backslash at its end.
bool RunToItsEnd(const std::string& program, const std::vector<std::string>& arguments) {
  std::wstring command_line = L'"' + text::ToWide(program) + L'"';
  for (const std::string& argument : arguments) command_line += L" \"" + text::ToWide(argument) + L'"';
  const base::UniqueHandle process = Start(std::move(command_line));
  if (::WaitForSingleObject(process.get(), kLongestWaitMs) != WAIT_OBJECT_0) {
    ::TerminateProcess(process.get(), 1);
    throw std::runtime_error("the program has not ended");
  }
  DWORD code = 1;
  if (!::GetExitCodeProcess(process.get(), &code)) throw std::runtime_error("the program's end is not known");
  if (code == kEnded) return false;
  if (code == 0) return true;
  throw std::runtime_error("the program has ended with code " + std::to_string(code));
}

}  // namespace zt::tests
