#include "tests/endurance/process_figures.h"

#include <windows.h>
#include <psapi.h>
#include <tlhelp32.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "base/windows/unique_handle.h"

namespace zt::endurance {
namespace {

constexpr std::int64_t kBytesPerKib = 1024;

// What the process keeps of each load: the plugin's one client of the firmware, which nobody deletes, and what the
// system's COM keeps of a thread.
constexpr std::int64_t kBytesOfALoad = 400;
constexpr std::int64_t kHeapNoiseBytes = 64 * kBytesPerKib;
// Heaps grow by whole segments, and the system keeps pages back.
constexpr std::int64_t kMemoryNoiseKib = 4 * kBytesPerKib;

PROCESS_MEMORY_COUNTERS Memory() {
  PROCESS_MEMORY_COUNTERS memory{};
  ::GetProcessMemoryInfo(::GetCurrentProcess(), &memory, sizeof memory);
  return memory;
}

// What is handed out of one heap.
std::int64_t BytesOf(HANDLE heap) {
  std::int64_t bytes = 0;
  PROCESS_HEAP_ENTRY entry{};
  ::HeapLock(heap);
  while (::HeapWalk(heap, &entry) != FALSE) {
    if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
  }
  ::HeapUnlock(heap);
  return bytes;
}

std::int64_t HeapBytes() {
  std::array<HANDLE, 64> heaps{};
  const DWORD count = ::GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
  std::int64_t bytes = 0;
  for (DWORD i = 0; i < std::min<DWORD>(count, static_cast<DWORD>(heaps.size())); ++i) bytes += BytesOf(heaps[i]);
  return bytes;
}

// One by one: Wine's GetProcessHandleCount knows none.
std::int64_t Handles() {
  constexpr std::uintptr_t kStep = 4;
  constexpr std::uintptr_t kEnd = 0x10000;
  std::int64_t handles = 0;
  for (std::uintptr_t value = kStep; value < kEnd; value += kStep) {
    DWORD flags = 0;
    if (::GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) != FALSE) ++handles;
  }
  return handles;
}

std::int64_t Threads() {
  const base::UniqueHandle all = base::OwnFile(::CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
  std::int64_t threads = 0;
  THREADENTRY32 thread{};
  thread.dwSize = sizeof thread;
  for (BOOL found = ::Thread32First(all.get(), &thread); found != FALSE; found = ::Thread32Next(all.get(), &thread)) {
    if (thread.th32OwnerProcessID == ::GetCurrentProcessId()) ++threads;
  }
  return threads;
}

std::int64_t Modules() {
  DWORD needed = 0;
  ::EnumProcessModules(::GetCurrentProcess(), nullptr, 0, &needed);
  return needed / sizeof(HMODULE);
}

}  // namespace

Snapshot ProcessFigures(std::int64_t loads) {
  const PROCESS_MEMORY_COUNTERS memory = Memory();
  return {{"heap bytes", HeapBytes(), kHeapNoiseBytes + loads * kBytesOfALoad},
          {"private KiB", static_cast<std::int64_t>(memory.PagefileUsage) / kBytesPerKib, kMemoryNoiseKib},
          {"working set KiB", static_cast<std::int64_t>(memory.WorkingSetSize) / kBytesPerKib, kMemoryNoiseKib},
          {"handles", Handles(), 0},
          {"threads", Threads(), 0},
          {"modules", Modules(), 0}};
}

}  // namespace zt::endurance
