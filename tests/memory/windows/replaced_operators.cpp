// `operator new` and `operator delete` of the whole process. What a Windows program defines, its libraries do not use:
// each takes those of the standard library's DLL, which therefore lead here from their first byte on, also when the DLL
// itself calls them.
#include <windows.h>
#include <malloc.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "tests/memory/memory_shortage.h"

namespace zt::tests {
namespace {

void* Noted(void* block) {
  if (block != nullptr) NoteBlockTaken();
  return block;
}

void* OrThrow(void* block) {
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void* NewOrNull(std::size_t size) noexcept {
  return TakeRequest() ? Noted(std::malloc(size == 0 ? 1 : size)) : nullptr;
}

void* NewAlignedOrNull(std::size_t size, std::align_val_t alignment) noexcept {
  return TakeRequest() ? Noted(::_aligned_malloc(size == 0 ? 1 : size, static_cast<std::size_t>(alignment))) : nullptr;
}

void* New(std::size_t size) {
  return OrThrow(NewOrNull(size));
}

void* NewAligned(std::size_t size, std::align_val_t alignment) {
  return OrThrow(NewAlignedOrNull(size, alignment));
}

void Delete(void* block) noexcept {
  if (block != nullptr) NoteBlockGivenBack();
  std::free(block);
}

void DeleteAligned(void* block) noexcept {
  if (block != nullptr) NoteBlockGivenBack();
  ::_aligned_free(block);
}

template <typename Operator>
const void* At(Operator* replacement) {
  return reinterpret_cast<const void*>(replacement);
}

struct Replaced {
  const char* name;
  const void* by;
};

// What further arguments a form has, a size or std::nothrow, does not matter to what takes its place.
const Replaced kReplaced[] = {
    {"_Znwy", At(&New)},
    {"_Znay", At(&New)},
    {"_ZnwyRKSt9nothrow_t", At(&NewOrNull)},
    {"_ZnayRKSt9nothrow_t", At(&NewOrNull)},
    {"_ZnwySt11align_val_t", At(&NewAligned)},
    {"_ZnaySt11align_val_t", At(&NewAligned)},
    {"_ZnwySt11align_val_tRKSt9nothrow_t", At(&NewAlignedOrNull)},
    {"_ZnaySt11align_val_tRKSt9nothrow_t", At(&NewAlignedOrNull)},
    {"_ZdlPv", At(&Delete)},
    {"_ZdaPv", At(&Delete)},
    {"_ZdlPvy", At(&Delete)},
    {"_ZdaPvy", At(&Delete)},
    {"_ZdlPvRKSt9nothrow_t", At(&Delete)},
    {"_ZdaPvRKSt9nothrow_t", At(&Delete)},
    {"_ZdlPvSt11align_val_t", At(&DeleteAligned)},
    {"_ZdaPvSt11align_val_t", At(&DeleteAligned)},
    {"_ZdlPvySt11align_val_t", At(&DeleteAligned)},
    {"_ZdaPvySt11align_val_t", At(&DeleteAligned)},
    {"_ZdlPvSt11align_val_tRKSt9nothrow_t", At(&DeleteAligned)},
    {"_ZdaPvSt11align_val_tRKSt9nothrow_t", At(&DeleteAligned)},
};

// Has the function's first instructions jump: mov rax, TO; jmp rax. There is room: its functions begin at every 16
// bytes.
bool Lead(void* function, const void* to) {
  constexpr std::uintptr_t kRoom = 16;
  if (reinterpret_cast<std::uintptr_t>(function) % kRoom != 0) return false;
  constexpr std::size_t kAddressAt = 2;
  std::array<unsigned char, 12> jump = {0x48, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xE0};
  std::memcpy(jump.data() + kAddressAt, &to, sizeof to);
  DWORD protection = 0;
  if (!::VirtualProtect(function, jump.size(), PAGE_EXECUTE_READWRITE, &protection)) return false;
  std::memcpy(function, jump.data(), jump.size());
  return ::VirtualProtect(function, jump.size(), protection, &protection) != 0 &&
         ::FlushInstructionCache(::GetCurrentProcess(), function, jump.size()) != 0;
}

bool ReplaceOperators() {
  const HMODULE library = ::GetModuleHandleW(L"libstdc++-6.dll");
  for (const Replaced& replaced : kReplaced) {
    void* const function =
        library != nullptr ? reinterpret_cast<void*>(::GetProcAddress(library, replaced.name)) : nullptr;
    if (function == nullptr || !Lead(function, replaced.by)) {
      std::fprintf(stderr, "%s of the standard library could not be replaced\n", replaced.name);
      std::abort();
    }
  }
  return true;
}

// Before anything of this program runs.
[[maybe_unused]] const bool operators_are_replaced = ReplaceOperators();

DWORD64 PlaceOf(const wchar_t* library) {
  return reinterpret_cast<DWORD64>(::GetModuleHandleW(library));
}

}  // namespace

// The way back is followed here, frame by frame, and not by the system's own operation for it: each frame comes with
// the library that it is in.
std::uint64_t CallersHash() {
  constexpr int kMostCallers = 9;
  constexpr std::uint64_t kPrime = 1099511628211U;
  std::uint64_t hash = 14695981039346656037U;
  const DWORD64 nvml = PlaceOf(L"nvml.dll");
  const DWORD64 adlx = PlaceOf(L"amdadlx64.dll");
  CONTEXT context{};
  ::RtlCaptureContext(&context);
  for (int i = 0; i < kMostCallers; ++i) {
    DWORD64 library = 0;
    PRUNTIME_FUNCTION const function = ::RtlLookupFunctionEntry(context.Rip, &library, nullptr);
    if (function == nullptr) break;
    if (library == nvml || library == adlx) return kCalledByStandIn;
    hash = (hash ^ (context.Rip - library)) * kPrime;
    void* handler_data = nullptr;
    DWORD64 frame = 0;
    ::RtlVirtualUnwind(UNW_FLAG_NHANDLER, library, context.Rip, function, &context, &handler_data, &frame, nullptr);
  }
  return hash;
}

}  // namespace zt::tests
