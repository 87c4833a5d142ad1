#include "platform/processes.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "support/windows/child_process.h"

// Processes of this very system.
namespace zt::telemetry::collector::performancesamples::platform {
namespace {

using tests::ChildProcess;

constexpr std::int64_t kSecond100ns = 10'000'000;
constexpr std::int64_t kUnixEpoch100ns = 116'444'736'000'000'000;

std::optional<Process> OpenThis(ProcessAccess access) {
  return Process::Open(::GetCurrentProcessId(), access);
}

// The system's clock in units of 100 ns since 1970.
std::int64_t Now() {
  FILETIME now{};
  ::GetSystemTimeAsFileTime(&now);
  return (std::int64_t{now.dwHighDateTime} << 32) + now.dwLowDateTime - kUnixEpoch100ns;
}

void UseTheProcessorFor(DWORD milliseconds) {
  const DWORD start = ::GetTickCount();
  while (::GetTickCount() - start < milliseconds) {
  }
}

// The system takes its time to forget a process that has ended.
bool CannotBeOpenedSoon(DWORD id) {
  for (int i = 0; i < 150; ++i) {
    if (!Process::Open(id, ProcessAccess::kReading)) return true;
    ::Sleep(20);
  }
  return false;
}

TEST(ProcessesTest, ThisProcessOpensForReadingAndForQuery) {
  EXPECT_TRUE(OpenThis(ProcessAccess::kReading));
  EXPECT_TRUE(OpenThis(ProcessAccess::kLimitedQuery));
}

TEST(ProcessesTest, AnIdThatNobodyHasDoesNotOpen) {
  EXPECT_FALSE(Process::Open(0xFFFF'FFF0, ProcessAccess::kReading));
  EXPECT_FALSE(Process::Open(0xFFFF'FFF0, ProcessAccess::kLimitedQuery));
}

TEST(ProcessesTest, TheIdleProcessDoesNotOpen) {
  EXPECT_FALSE(Process::Open(0, ProcessAccess::kReading));
}

TEST(ProcessesTest, ThisProcessWasCreatedAShortWhileAgo) {
  const auto times = OpenThis(ProcessAccess::kLimitedQuery)->Times();
  ASSERT_TRUE(times);
  EXPECT_LE(times->created, Now() + kSecond100ns);
  EXPECT_GT(times->created, Now() - 600 * kSecond100ns);
}

TEST(ProcessesTest, TheTimesGrowWithWhatTheProcessUses) {
  const auto process = OpenThis(ProcessAccess::kReading);
  const auto before = process->Times();
  UseTheProcessorFor(500);
  const auto after = process->Times();
  ASSERT_TRUE(before && after);
  EXPECT_GT(after->user + after->kernel, before->user + before->kernel);
  EXPECT_EQ(after->created, before->created);
}

TEST(ProcessesTest, TheWorkingSetOfThisProcessIsNotAboveItsPeak) {
  const auto memory = OpenThis(ProcessAccess::kReading)->Memory();
  ASSERT_TRUE(memory);
  constexpr std::uint64_t kMebibyte = 1ULL << 20U;
  EXPECT_GT(memory->working_set, kMebibyte);
  EXPECT_LE(memory->working_set, memory->peak_working_set);
}

TEST(ProcessesTest, ThisProcessHasTheExitCodeOfActiveOnes) {
  EXPECT_EQ(OpenThis(ProcessAccess::kLimitedQuery)->ExitCode(), kStillActive);
}

TEST(ProcessesTest, TheRightsOfAQueryAreNotEnoughForAWait) {
  EXPECT_EQ(OpenThis(ProcessAccess::kLimitedQuery)->PollEnd(), kWaitFailed);
}

TEST(ProcessesTest, TheTokenOfThisProcessTellsOfElevation) {
  TOKEN_ELEVATION elevation{};
  HANDLE token = nullptr;
  ASSERT_TRUE(::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token));
  DWORD length = 0;
  EXPECT_TRUE(::GetTokenInformation(token, TokenElevation, &elevation, sizeof elevation, &length));
  ::CloseHandle(token);
  EXPECT_EQ(OpenThis(ProcessAccess::kLimitedQuery)->IsElevated(), elevation.TokenIsElevated != 0);
}

TEST(ProcessesTest, AProcessThatEndsWhileItIsOpenTellsItsExitCode) {
  ChildProcess child(L"cmd.exe");
  const auto process = Process::Open(child.Id(), ProcessAccess::kLimitedQuery);
  ASSERT_TRUE(process);
  EXPECT_EQ(process->ExitCode(), kStillActive);
  child.End(7);
  EXPECT_EQ(process->ExitCode(), 7U);
}

TEST(ProcessesTest, AProcessThatIsGoneDoesNotOpen) {
  ChildProcess child(L"cmd.exe");
  child.End(0);
  child.Forget();
  EXPECT_TRUE(CannotBeOpenedSoon(child.Id()));
}

// A process that has ended can be opened for as long as somebody has it open.
TEST(ProcessesTest, AnOpenProcessStaysOpen) {
  ChildProcess child(L"cmd.exe");
  const DWORD id = child.Id();
  const auto process = Process::Open(id, ProcessAccess::kLimitedQuery);
  child.End(0);
  child.Forget();
  EXPECT_FALSE(CannotBeOpenedSoon(id));
}

TEST(ProcessesTest, ALeftProcessIsClosed) {
  ChildProcess child(L"cmd.exe");
  const DWORD id = child.Id();
  {
    const auto process = Process::Open(id, ProcessAccess::kReading);
    ASSERT_TRUE(process && process->Times() && process->Memory() && process->ExitCode() && process->IsElevated());
  }
  child.End(0);
  child.Forget();
  EXPECT_TRUE(CannotBeOpenedSoon(id));
}

// The highest value of a few handles that are opened now. The system gives values out again once they are free, so that
// it rises with what is left open; a few, since one could take the place of a handle that was closed last. (Wine does
// not tell how many handles a process has.)
std::uintptr_t NextHandleValue() {
  std::array<HANDLE, 8> events{};
  for (HANDLE& event : events) event = ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
  std::uintptr_t highest = 0;
  for (const HANDLE event : events) {
    EXPECT_NE(event, nullptr);
    ::CloseHandle(event);
    highest = std::max(highest, reinterpret_cast<std::uintptr_t>(event));
  }
  return highest;
}

TEST(ProcessesTest, NoQuestionLeavesAHandleOpen) {
  constexpr int kTimes = 1'000;
  constexpr std::uintptr_t kRise = 500 * 4;  // values are multiples of four
  const auto process = OpenThis(ProcessAccess::kReading);
  ASSERT_TRUE(process && process->IsElevated());
  const std::uintptr_t before = NextHandleValue();
  {
    std::vector<std::optional<Process>> held;
    for (int i = 0; i < kTimes; ++i) held.push_back(OpenThis(ProcessAccess::kLimitedQuery));
    ASSERT_GT(NextHandleValue(), before + kRise) << "the value tells of open handles";
  }
  for (int i = 0; i < kTimes; ++i) {
    process->IsElevated();
    process->Times();
    process->Memory();
    process->ExitCode();
    process->PollEnd();
    OpenThis(ProcessAccess::kLimitedQuery);
  }
  EXPECT_LT(NextHandleValue(), before + kRise);
}

TEST(ProcessesTest, AnOpenProcessCanBeMoved) {
  auto first = OpenThis(ProcessAccess::kReading);
  auto second = Process::Open(::GetCurrentProcessId(), ProcessAccess::kLimitedQuery);
  *second = std::move(*first);
  EXPECT_TRUE(second->Memory());
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples::platform
