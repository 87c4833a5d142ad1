#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "bare_host.h"

namespace zt::tests {
namespace {

using telemetry::host::LoadedLibrary;
using testing::HasSubstr;

TEST(ReloadTest, RunsThePluginFromAnotherFolder) {
  BarePlugin plugin;
  EXPECT_THAT(plugin.Collect(), HasSubstr(kSuccess));
}

// protobuf goes on knowing what was registered with it.
TEST(ReloadTest, UnloadsAndReloadsThePluginWhileProtobufStays) {
  const LoadedLibrary protobuf(ProtobufFile());
  for (int i = 0; i < 2; ++i) {
    BarePlugin plugin;
    EXPECT_THAT(plugin.Collect(), HasSubstr(kSuccess));
  }
}

TEST(ReloadTest, UnloadsAndReloadsThePluginWithProtobuf) {
  for (int i = 0; i < 2; ++i) {
    BarePlugin plugin;
    EXPECT_THAT(plugin.Collect(), HasSubstr(kSuccess));
  }
}

}  // namespace
}  // namespace zt::tests
