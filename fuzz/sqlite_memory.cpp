#include "sqlite_memory.h"

#include <sqlite3.h>

#include <cstddef>

// The C library's own, whatever takes their place.
extern "C" void* __libc_malloc(std::size_t size);                // NOLINT(bugprone-reserved-identifier)
extern "C" void* __libc_realloc(void* block, std::size_t size);  // NOLINT(bugprone-reserved-identifier)
extern "C" void __libc_free(void* block);                        // NOLINT(bugprone-reserved-identifier)

namespace zt::fuzz {
namespace {

// SQLite asks for the size of a block that it has, which AddressSanitizer would not tell of these.
struct alignas(std::max_align_t) Header {
  int size;
};

void* Behind(void* header, int size) {
  if (header == nullptr) return nullptr;
  static_cast<Header*>(header)->size = size;
  return static_cast<Header*>(header) + 1;
}

void* HeaderOf(void* block) {
  return block == nullptr ? nullptr : static_cast<Header*>(block) - 1;
}

std::size_t WithHeader(int size) {
  return sizeof(Header) + static_cast<std::size_t>(size);
}

void* Allocate(int size) {
  return Behind(__libc_malloc(WithHeader(size)), size);
}

void Free(void* block) {
  __libc_free(HeaderOf(block));
}

void* Reallocate(void* block, int size) {
  return Behind(__libc_realloc(HeaderOf(block), WithHeader(size)), size);
}

int SizeOf(void* block) {
  return block == nullptr ? 0 : static_cast<Header*>(HeaderOf(block))->size;
}

int RoundUp(int size) {
  constexpr int kUnit = 8;
  return (size + kUnit - 1) / kUnit * kUnit;
}

}  // namespace

bool UseFastMemory() {
  static const sqlite3_mem_methods methods = {
      &Allocate, &Free, &Reallocate, &SizeOf, &RoundUp, [](void*) { return SQLITE_OK; }, [](void*) {}, nullptr};
  return sqlite3_config(SQLITE_CONFIG_SINGLETHREAD) == SQLITE_OK &&
         sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0) == SQLITE_OK &&
         sqlite3_config(SQLITE_CONFIG_MALLOC, &methods) == SQLITE_OK;
}

}  // namespace zt::fuzz
