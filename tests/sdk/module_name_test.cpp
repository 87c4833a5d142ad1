#include "platform/module_name.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <system_error>

namespace zt::tests {
namespace {

using telemetry::collector::performancesamples::platform::ModuleFileName;

void SomeFunction() {}

TEST(ModuleNameTest, AFunctionOfThisProgramLiesInThisProgram) {
  void (*const function)() = &SomeFunction;
  const void* address = nullptr;
  std::memcpy(&address, &function, sizeof(address));
  const std::wstring name = ModuleFileName(address);
  EXPECT_TRUE(name == L"sdk_tests" || name == L"sdk_tests.exe") << testing::PrintToString(name);
}

TEST(ModuleNameTest, ATableOfVirtualOperationsLiesInItsLibrary) {
  // The first pointer of an object of the C++ runtime leads into the runtime's library.
  const std::error_category& category = std::generic_category();
  const void* table = nullptr;
  std::memcpy(&table, static_cast<const void*>(&category), sizeof(table));
  const std::wstring name = ModuleFileName(table);
  const bool is_runtime = name.rfind(L"libstdc++", 0) == 0 || name.rfind(L"msvcp", 0) == 0;
  EXPECT_TRUE(is_runtime) << testing::PrintToString(name);
}

TEST(ModuleNameTest, MemoryOutsideOfModulesHasNoName) {
  const auto memory = std::make_unique<int>(0);
  EXPECT_EQ(ModuleFileName(memory.get()), L"");
}

}  // namespace
}  // namespace zt::tests
