#include "live_things.h"

#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <new>

// Where each block was allocated is not written down, which costs more than all else of a cycle: an error of the
// sanitizer tells enough without, and the environment variable ASAN_OPTIONS brings it back.
extern "C" const char* __asan_default_options();   // NOLINT(bugprone-reserved-identifier): the sanitizer's name
extern "C" const char* __asan_default_options() {  // NOLINT(bugprone-reserved-identifier)
  return "malloc_context_size=1:quarantine_size_mb=16";
}

// Every block has a head that says whether it counts: it may be given back when nothing is counted.
namespace zt::tests {
namespace {

struct alignas(std::max_align_t) Head {
  bool counts;
};

bool counting = false;
std::int64_t live = 0;

void* Allocate(std::size_t size) {
  auto* const head = static_cast<Head*>(std::malloc(sizeof(Head) + size));
  if (head == nullptr) return nullptr;
  head->counts = counting;
  if (counting) ++live;
  return head + 1;
}

void* AllocateOrThrow(std::size_t size) {
  void* const block = Allocate(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void Free(void* block) noexcept {
  if (block == nullptr) return;
  Head* const head = static_cast<Head*>(block) - 1;
  if (head->counts) --live;
  std::free(head);
}

}  // namespace

void CountSystemThings(LiveThings& things) {
  const std::filesystem::directory_iterator files("/proc/self/fd");
  things["open files"] = std::distance(begin(files), end(files));
}

void CountAllocations(bool count) {
  counting = count;
}

std::int64_t LiveAllocations() {
  return live;
}

}  // namespace zt::tests

void* operator new(std::size_t size) {
  return zt::tests::AllocateOrThrow(size);
}
void* operator new[](std::size_t size) {
  return zt::tests::AllocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return zt::tests::Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return zt::tests::Allocate(size);
}
void operator delete(void* block) noexcept {
  zt::tests::Free(block);
}
void operator delete[](void* block) noexcept {
  zt::tests::Free(block);
}
void operator delete(void* block, std::size_t /*size*/) noexcept {
  zt::tests::Free(block);
}
void operator delete[](void* block, std::size_t /*size*/) noexcept {
  zt::tests::Free(block);
}
void operator delete(void* block, const std::nothrow_t& /*tag*/) noexcept {
  zt::tests::Free(block);
}
void operator delete[](void* block, const std::nothrow_t& /*tag*/) noexcept {
  zt::tests::Free(block);
}
