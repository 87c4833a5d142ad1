#include "tests/endurance/process_figures.h"

#include <malloc.h>
#include <unistd.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

// Of AddressSanitizer, which has a heap of its own; null without it.
extern "C" __attribute__((weak)) std::size_t __sanitizer_get_current_allocated_bytes();

namespace zt::endurance {
namespace {

constexpr std::int64_t kBytesPerKib = 1024;

// The C library keeps small blocks that were given back for the next one who asks.
constexpr std::int64_t kHeapNoiseBytes = 16 * kBytesPerKib;
// AddressSanitizer registers a function of its own for each one that a library wants to be called when it is unloaded,
// and the C library keeps those.
constexpr std::int64_t kSanitizerBytesOfALoad = kBytesPerKib;
// Pages are the system's to give and take.
constexpr std::int64_t kResidentNoiseKib = 2 * kBytesPerKib;

bool IsSanitized() {
  return __sanitizer_get_current_allocated_bytes != nullptr;
}

std::int64_t HeapBytes() {
  if (IsSanitized()) return static_cast<std::int64_t>(__sanitizer_get_current_allocated_bytes());
  const struct mallinfo2 heap = ::mallinfo2();
  return static_cast<std::int64_t>(heap.uordblks + heap.hblkhd);
}

std::int64_t ResidentKib() {
  std::ifstream statm("/proc/self/statm");
  std::int64_t pages = 0;
  std::int64_t resident_pages = 0;
  statm >> pages >> resident_pages;
  return resident_pages * (::sysconf(_SC_PAGESIZE) / kBytesPerKib);
}

std::int64_t EntriesOf(const char* folder) {
  return std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
}

std::int64_t LoadedLibraries() {
  std::ifstream maps("/proc/self/maps");
  std::set<std::string> files;
  for (std::string line; std::getline(maps, line);) {
    const std::size_t path = line.find('/');
    if (path != std::string::npos) files.insert(line.substr(path));
  }
  return static_cast<std::int64_t>(files.size());
}

}  // namespace

Snapshot ProcessFigures(std::int64_t loads) {
  return {{"heap bytes", HeapBytes(), kHeapNoiseBytes + (IsSanitized() ? loads * kSanitizerBytesOfALoad : 0)},
          // What is freed under AddressSanitizer stays resident for long.
          {"resident KiB", ResidentKib(), IsSanitized() ? kShownOnly : kResidentNoiseKib},
          {"open files", EntriesOf("/proc/self/fd"), 0},
          {"threads", EntriesOf("/proc/self/task"), 0},
          {"mapped files", LoadedLibraries(), 0}};
}

}  // namespace zt::endurance
