#include <windows.h>
#include <gtest/gtest.h>

#include <string>

#include "zt/shared/telemetry_storage.h"

namespace zt::shared {
namespace {

// The process's environment is whoever's who starts it; the folder is the system's.
TEST(DefaultFolderTest, IsNotTakenFromTheEnvironment) {
  const std::string before = TelemetryStorage::GetDefaultDBPath();
  for (const wchar_t* name : {L"ProgramData", L"ALLUSERSPROFILE", L"APPDATA", L"LOCALAPPDATA", L"USERPROFILE"}) {
    ASSERT_TRUE(::SetEnvironmentVariableW(name, LR"(C:\planted)"));
  }
  TelemetryStorage::SetDefaultDBPath("");  // the default, asked again
  EXPECT_EQ(TelemetryStorage::GetDefaultDBPath(), before);
}

}  // namespace
}  // namespace zt::shared
