#include "platform/module_name.h"

#include <google/protobuf/timestamp.pb.h>
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "zt/telemetry/common/telemetry_sink.h"

namespace zt::tests {
namespace {

using telemetry::collector::performancesamples::platform::ModuleFileName;

void SomeFunction() {}

TEST(ModuleNameTest, AFunctionOfThisProgramLiesInThisProgram) {
  void (*const function)() = &SomeFunction;
  const void* address = nullptr;
  std::memcpy(&address, &function, sizeof(address));
  const std::wstring name = ModuleFileName(address);
  EXPECT_TRUE(name == L"collector_tests" || name == L"collector_tests.exe") << testing::PrintToString(name);
}

TEST(ModuleNameTest, AFunctionOfALibraryLiesInThatLibrary) {
  const auto address = reinterpret_cast<const void*>(&telemetry::common::RegisteredTelemetrySink);
  const std::wstring name = ModuleFileName(address);
  EXPECT_TRUE(name == L"zt-telemetry-commons.so" || name == L"zt-telemetry-commons.dll")
      << testing::PrintToString(name);
}

TEST(ModuleNameTest, ATableOfVirtualOperationsLiesInItsLibrary) {
  // The first pointer of a message leads to the table of its class.
  const google::protobuf::Timestamp message;
  const void* table = nullptr;
  std::memcpy(&table, static_cast<const void*>(&message), sizeof(table));
  const std::wstring name = ModuleFileName(table);
  EXPECT_EQ(name.rfind(L"libprotobuf", 0), 0U) << testing::PrintToString(name);
}

TEST(ModuleNameTest, MemoryOutsideOfModulesHasNoName) {
  const auto memory = std::make_unique<int>(0);
  EXPECT_EQ(ModuleFileName(memory.get()), L"");
}

}  // namespace
}  // namespace zt::tests
