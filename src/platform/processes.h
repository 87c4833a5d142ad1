#pragma once

#include <cstdint>
#include <memory>
#include <optional>

/// Processes of the system, opened by their id.
namespace zt::telemetry::collector::performancesamples::platform {

/// What a process is opened for: the system's access rights.
enum class ProcessAccess : std::uint32_t {
  kReading = 1040,       // PROCESS_QUERY_INFORMATION and PROCESS_VM_READ
  kLimitedQuery = 4096,  // PROCESS_QUERY_LIMITED_INFORMATION
};

/// Times of `GetProcessTimes`, in units of 100 ns.
struct ProcessTimes {
  std::int64_t created = 0;  // UTC, since 1970-01-01 00:00:00; a process without a creation time has one of 1601
  std::uint64_t kernel = 0;
  std::uint64_t user = 0;
};

/// Working set of `GetProcessMemoryInfo`, in bytes.
struct ProcessMemory {
  std::uint64_t working_set = 0;
  std::uint64_t peak_working_set = 0;
};

/// Exit code of a process that has not ended (STILL_ACTIVE).
inline constexpr std::uint32_t kStillActive = 259;

/// Results of a wait.
inline constexpr std::uint32_t kWaitSignalled = 0;           // the process has ended
inline constexpr std::uint32_t kWaitAbandoned = 128;         // WAIT_ABANDONED
inline constexpr std::uint32_t kWaitTimedOut = 258;          // the process goes on
inline constexpr std::uint32_t kWaitFailed = 4'294'967'295;  // WAIT_FAILED

/// An open process, closed at the end of its life. Each operation is one question to the system; an answer that is
/// absent is a call that failed.
class Process {
 public:
  /// Absent when the system does not open the process: it has ended, or its rights forbid it.
  static std::optional<Process> Open(std::uint32_t id, ProcessAccess access);
  ~Process();
  Process(Process&&) noexcept;
  Process& operator=(Process&&) noexcept;

  std::optional<ProcessTimes> Times() const;
  std::optional<ProcessMemory> Memory() const;
  std::optional<std::uint32_t> ExitCode() const;

  /// Result of a wait for the end of the process that does not wait: one of those above, `kWaitFailed` for a wait that
  /// the system refuses.
  std::uint32_t PollEnd() const;

  /// Whether the process's token is an elevated one; absent when the token cannot be opened or does not tell.
  std::optional<bool> IsElevated() const;

 private:
  struct Handle;
  explicit Process(std::unique_ptr<Handle> handle);

  std::unique_ptr<Handle> handle_;
};

}  // namespace zt::telemetry::collector::performancesamples::platform
