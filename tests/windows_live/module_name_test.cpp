#include "platform/module_name.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <memory>

namespace zt::tests {
namespace {

using telemetry::collector::performancesamples::platform::ModuleFileName;

constexpr wchar_t kSomeLibrary[] = L"cabinet.dll";

void SomeFunction() {}

template <typename Function>
const void* AddressOf(Function* function) {
  const void* address = nullptr;
  std::memcpy(&address, &function, sizeof(address));
  return address;
}

struct LibraryDeleter {
  using pointer = HMODULE;
  void operator()(HMODULE library) const { ::FreeLibrary(library); }
};
using Library = std::unique_ptr<HMODULE, LibraryDeleter>;

TEST(ModuleNameTest, AFunctionOfThisProgramLiesInThisProgram) {
  EXPECT_EQ(ModuleFileName(AddressOf(&SomeFunction)), L"windows_live_tests.exe");
}

TEST(ModuleNameTest, AFunctionOfALibraryLiesInThatLibrary) {
  const HMODULE library = ::GetModuleHandleW(L"zt-shared-wmi-client.dll");
  ASSERT_TRUE(library != nullptr);
  EXPECT_EQ(ModuleFileName(library), L"zt-shared-wmi-client.dll");
}

TEST(ModuleNameTest, MemoryOutsideOfModulesHasNoName) {
  const auto memory = std::make_unique<int>(0);
  EXPECT_EQ(ModuleFileName(memory.get()), L"");
}

TEST(ModuleNameTest, TheLibraryIsNotHeld) {
  ASSERT_TRUE(::GetModuleHandleW(kSomeLibrary) == nullptr);
  {
    const Library library(::LoadLibraryW(kSomeLibrary));
    ASSERT_TRUE(library != nullptr);
    EXPECT_EQ(ModuleFileName(library.get()), kSomeLibrary);
  }
  EXPECT_TRUE(::GetModuleHandleW(kSomeLibrary) == nullptr);
}

}  // namespace
}  // namespace zt::tests
