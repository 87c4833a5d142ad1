#include "zt/shared/telemetry_storage.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace zt::shared {
namespace {

constexpr char kSeparator = static_cast<char>(std::filesystem::path::preferred_separator);

std::string CurrentFolder() {
  return TelemetryStorage::GetDefaultDBPath();
}

class TelemetryStorageTest : public ::testing::Test {
 protected:
  ~TelemetryStorageTest() override { TelemetryStorage::SetDefaultDBPath(""); }
};

TEST_F(TelemetryStorageTest, AStorageKeepsTheNameOfItsDatabase) {
  EXPECT_EQ(TelemetryStorage("ssm.db", "").Database(), "ssm.db");
}

TEST_F(TelemetryStorageTest, TheDefaultFolderTakesAFileName) {
  const std::string folder = CurrentFolder();
  const std::string own = std::string("zt") + kSeparator + "telemetry" + kSeparator;
  ASSERT_GT(folder.size(), own.size());
  EXPECT_EQ(folder.substr(folder.size() - own.size()), own);
  EXPECT_TRUE(std::filesystem::path(folder + "ssm.db").is_absolute()) << folder;
}

TEST_F(TelemetryStorageTest, TheHostsFolderIsUsedInsteadOfTheDefault) {
  TelemetryStorage::SetDefaultDBPath(std::string("there") + kSeparator);
  EXPECT_EQ(CurrentFolder(), std::string("there") + kSeparator);
}

TEST_F(TelemetryStorageTest, AMissingSeparatorIsAdded) {
  TelemetryStorage::SetDefaultDBPath("there");
  EXPECT_EQ(CurrentFolder(), std::string("there") + kSeparator);
}

TEST_F(TelemetryStorageTest, ASlashIsASeparatorEverywhere) {
  TelemetryStorage::SetDefaultDBPath("there/");
  EXPECT_EQ(CurrentFolder(), "there/");
}

TEST_F(TelemetryStorageTest, AFolderWithCharactersBeyondAsciiStaysAsItIs) {
  TelemetryStorage::SetDefaultDBPath("d\xC3\xB6rt/\xE2\x82\xAC/");
  EXPECT_EQ(CurrentFolder(), "d\xC3\xB6rt/\xE2\x82\xAC/");
}

TEST_F(TelemetryStorageTest, TheLastFolderCounts) {
  TelemetryStorage::SetDefaultDBPath("here/");
  TelemetryStorage::SetDefaultDBPath("there/");
  EXPECT_EQ(CurrentFolder(), "there/");
}

TEST_F(TelemetryStorageTest, AnEmptyTextRestoresTheDefault) {
  const std::string by_default = CurrentFolder();
  TelemetryStorage::SetDefaultDBPath("there/");
  TelemetryStorage::SetDefaultDBPath("");
  EXPECT_EQ(CurrentFolder(), by_default);
}

TEST_F(TelemetryStorageTest, TheTextStaysValidBetweenCalls) {
  TelemetryStorage::SetDefaultDBPath("there/");
  const char* first = TelemetryStorage::GetDefaultDBPath();
  EXPECT_EQ(TelemetryStorage::GetDefaultDBPath(), first);
}

}  // namespace
}  // namespace zt::shared
