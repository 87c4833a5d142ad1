#include <gtest/gtest.h>
#include <sys/auxv.h>

#include "platform/module_name.h"

namespace zt::tests {
namespace {

using telemetry::collector::performancesamples::platform::ModuleFileName;

// What the kernel maps into each process is a module by a name alone.
TEST(NamelessModuleTest, AModuleThatLiesInNoFolderHasNoFileName) {
  const unsigned long address = getauxval(AT_SYSINFO_EHDR);
  ASSERT_NE(address, 0U);
  EXPECT_EQ(ModuleFileName(reinterpret_cast<const void*>(address)), L"");
}

}  // namespace
}  // namespace zt::tests
