// `operator new` and `operator delete` of the whole process: what this program defines, its libraries use too.
#include <dlfcn.h>
#include <execinfo.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <string_view>

#include "tests/memory/memory_shortage.h"

namespace {

void* Noted(void* block) {
  if (block != nullptr) zt::tests::NoteBlockTaken();
  return block;
}

void* Allocate(std::size_t size) {
  return zt::tests::TakeRequest() ? Noted(std::malloc(size == 0 ? 1 : size)) : nullptr;
}

void* Allocate(std::size_t size, std::align_val_t alignment) {
  const auto boundary = static_cast<std::size_t>(alignment);
  const std::size_t whole = (size + boundary - 1) / boundary * boundary;
  return zt::tests::TakeRequest() ? Noted(std::aligned_alloc(boundary, whole == 0 ? boundary : whole)) : nullptr;
}

void* OrThrow(void* block) {
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void Release(void* block) {
  if (block != nullptr) zt::tests::NoteBlockGivenBack();
  std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
  return OrThrow(Allocate(size));
}
void* operator new[](std::size_t size) {
  return OrThrow(Allocate(size));
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return OrThrow(Allocate(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return OrThrow(Allocate(size, alignment));
}
void* operator new(std::size_t size, const std::nothrow_t& /*no_exception*/) noexcept {
  return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*no_exception*/) noexcept {
  return Allocate(size);
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t& /*no_exception*/) noexcept {
  return Allocate(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t& /*no_exception*/) noexcept {
  return Allocate(size, alignment);
}

void operator delete(void* block) noexcept {
  Release(block);
}
void operator delete[](void* block) noexcept {
  Release(block);
}
void operator delete(void* block, std::size_t /*size*/) noexcept {
  Release(block);
}
void operator delete[](void* block, std::size_t /*size*/) noexcept {
  Release(block);
}
void operator delete(void* block, std::align_val_t /*alignment*/) noexcept {
  Release(block);
}
void operator delete[](void* block, std::align_val_t /*alignment*/) noexcept {
  Release(block);
}
void operator delete(void* block, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
  Release(block);
}
void operator delete[](void* block, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
  Release(block);
}
void operator delete(void* block, const std::nothrow_t& /*no_exception*/) noexcept {
  Release(block);
}
void operator delete[](void* block, const std::nothrow_t& /*no_exception*/) noexcept {
  Release(block);
}
void operator delete(void* block, std::align_val_t /*alignment*/, const std::nothrow_t& /*no_exception*/) noexcept {
  Release(block);
}
void operator delete[](void* block, std::align_val_t /*alignment*/, const std::nothrow_t& /*no_exception*/) noexcept {
  Release(block);
}

namespace zt::tests {

namespace {

bool IsInStandIn(const void* address) {
  Dl_info info{};
  if (::dladdr(address, &info) == 0 || info.dli_fname == nullptr) return false;
  const std::string_view file(info.dli_fname);
  return file.ends_with("/nvml.dll") || file.ends_with("/amdadlx64.dll");
}

}  // namespace

std::uint64_t CallersHash() {
  constexpr int kMostCallers = 11;
  // Without optimisation every step of a container is a call: the stand-in may be far up.
  constexpr int kMostCallersOfStandIns = 32;
  void* addresses[kMostCallersOfStandIns];
  const int count = ::backtrace(addresses, kMostCallersOfStandIns);
  if (std::any_of(addresses, addresses + count, &IsInStandIn)) return kCalledByStandIn;
  constexpr std::uint64_t kPrime = 1099511628211U;
  std::uint64_t hash = 14695981039346656037U;
  for (int i = 0; i < std::min(count, kMostCallers); ++i) {
    hash = (hash ^ reinterpret_cast<std::uint64_t>(addresses[i])) * kPrime;
  }
  return hash;
}

}  // namespace zt::tests
