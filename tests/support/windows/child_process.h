#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

#include "base/windows/unique_handle.h"

namespace zt::tests {

/// A program that this one has started; ended and forgotten at the end of its life.
class ChildProcess {
 public:
  explicit ChildProcess(std::wstring command_line) {
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION started{};
    if (!::CreateProcessW(nullptr, command_line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW | CREATE_SUSPENDED,
                          nullptr, nullptr, &start, &started)) {
      throw std::runtime_error("the program could not be started");
    }
    id_ = started.dwProcessId;
    process_.reset(started.hProcess);
    thread_.reset(started.hThread);
  }
  ~ChildProcess() { End(0); }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  DWORD Id() const { return id_; }

  /// Ends it and waits until it has ended; nothing once it is forgotten.
  void End(UINT exit_code) {
    if (!process_) return;
    ::TerminateProcess(process_.get(), exit_code);
    ::WaitForSingleObject(process_.get(), 10'000);
  }

  /// Holds it open no more.
  void Forget() {
    thread_.reset();
    process_.reset();
  }

 private:
  DWORD id_ = 0;
  base::UniqueHandle process_;
  base::UniqueHandle thread_;
};

}  // namespace zt::tests
