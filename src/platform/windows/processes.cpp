#include "platform/processes.h"

#include <windows.h>
#include <psapi.h>

#include <utility>

#include "base/windows/unique_handle.h"

namespace zt::telemetry::collector::performancesamples::platform {
namespace {

// 1970-01-01 in FILETIME's count of 100 ns since 1601-01-01.
constexpr std::int64_t kUnixEpoch = 116'444'736'000'000'000;

static_assert(static_cast<DWORD>(ProcessAccess::kReading) == (PROCESS_QUERY_INFORMATION | PROCESS_VM_READ));
static_assert(static_cast<DWORD>(ProcessAccess::kLimitedQuery) == PROCESS_QUERY_LIMITED_INFORMATION);
static_assert(kStillActive == STILL_ACTIVE);
static_assert(kWaitSignalled == WAIT_OBJECT_0 && kWaitAbandoned == WAIT_ABANDONED && kWaitTimedOut == WAIT_TIMEOUT &&
              kWaitFailed == WAIT_FAILED);

std::uint64_t Units(const FILETIME& time) {
  return std::uint64_t{time.dwHighDateTime} << 32U | time.dwLowDateTime;
}

base::UniqueHandle OpenToken(HANDLE process) {
  HANDLE token = nullptr;
  return base::UniqueHandle(::OpenProcessToken(process, TOKEN_QUERY, &token) != FALSE ? token : nullptr);
}

}  // namespace

struct Process::Handle {
  base::UniqueHandle process;
};

Process::Process(std::unique_ptr<Handle> handle) : handle_(std::move(handle)) {}

Process::~Process() = default;
Process::Process(Process&&) noexcept = default;
Process& Process::operator=(Process&&) noexcept = default;

std::optional<Process> Process::Open(std::uint32_t id, ProcessAccess access) {
  base::UniqueHandle process(::OpenProcess(static_cast<DWORD>(access), FALSE, id));
  if (!process) return std::nullopt;
  return Process(std::make_unique<Handle>(Handle{std::move(process)}));
}

std::optional<ProcessTimes> Process::Times() const {
  FILETIME created{};
  FILETIME exited{};
  FILETIME kernel{};
  FILETIME user{};
  if (::GetProcessTimes(handle_->process.get(), &created, &exited, &kernel, &user) == FALSE) return std::nullopt;
  return ProcessTimes{static_cast<std::int64_t>(Units(created)) - kUnixEpoch, Units(kernel), Units(user)};
}

std::optional<ProcessMemory> Process::Memory() const {
  PROCESS_MEMORY_COUNTERS counters{};
  if (::GetProcessMemoryInfo(handle_->process.get(), &counters, sizeof counters) == FALSE) return std::nullopt;
  return ProcessMemory{counters.WorkingSetSize, counters.PeakWorkingSetSize};
}

std::optional<std::uint32_t> Process::ExitCode() const {
  DWORD exit_code = 0;
  if (::GetExitCodeProcess(handle_->process.get(), &exit_code) == FALSE) return std::nullopt;
  return exit_code;
}

std::uint32_t Process::PollEnd() const {
  return ::WaitForSingleObject(handle_->process.get(), 0);
}

std::optional<bool> Process::IsElevated() const {
  const base::UniqueHandle token = OpenToken(handle_->process.get());
  if (!token) return std::nullopt;
  TOKEN_ELEVATION elevation{};
  DWORD length = 0;
  if (::GetTokenInformation(token.get(), TokenElevation, &elevation, sizeof elevation, &length) == FALSE) {
    return std::nullopt;
  }
  return elevation.TokenIsElevated != 0;
}

}  // namespace zt::telemetry::collector::performancesamples::platform
