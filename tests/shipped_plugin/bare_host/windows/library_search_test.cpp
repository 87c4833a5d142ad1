#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/windows/planted_libraries.h"
#include "tests/shipped_plugin/bare_host/bare_host.h"

// Which files the plugin's libraries come from, wherever its host stands.
namespace zt::tests {
namespace {

using telemetry::host::LoadedLibrary;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST(LibrarySearchTest, APlantedLibraryLeavesAMark) {
  const PlantedLibraries planted;
  EXPECT_THAT(planted.Names(), UnorderedElementsAre("libsqlite3-0.dll", "nvml.dll", "amdadlx64.dll"));
  EXPECT_THAT(planted.Marks(), IsEmpty());
  const LoadedLibrary loaded(planted.File("nvml.dll"));
  EXPECT_THAT(planted.Marks(), ElementsAre("nvml.dll.loaded"));
}

TEST(LibrarySearchTest, ACollectionTakesNoLibraryFromTheCurrentFolderOrTheSearchPath) {
  const PlantedLibraries planted;
  planted.BecomeCurrent();
  BarePlugin plugin;
  EXPECT_THAT(plugin.Collect(), HasSubstr(kSuccess));
  EXPECT_THAT(planted.Marks(), IsEmpty());
}

TEST(LibrarySearchTest, ACollectionTakesNoLibraryFromAFolderThatTheEnvironmentNames) {
  const PlantedLibraries planted;
  planted.BecomeTheSystems();
  BarePlugin plugin;
  EXPECT_THAT(plugin.Collect(), HasSubstr(kSuccess));
  EXPECT_THAT(planted.Marks(), IsEmpty());
}

// A library of the name of one that is loaded is not looked for any more.
TEST(LibrarySearchTest, TheDatabaseLibraryOfTheHostIsNotThePlugins) {
  const PlantedLibraries planted;
  const LoadedLibrary hosts_own(planted.File("libsqlite3-0.dll"));
  BarePlugin plugin;
  EXPECT_THAT(plugin.Collect(), HasSubstr(kSuccess));
}

// What the flags of host/windows/loaded_library.cpp are for.
TEST(LibrarySearchTest, APlainLoadDoesNotLookBesideThePlugin) {
  EXPECT_EQ(::LoadLibraryW(PluginFile().c_str()), nullptr);
}

}  // namespace
}  // namespace zt::tests
