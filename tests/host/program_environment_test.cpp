#include "host/program_environment.h"

#include <gmock/gmock.h>

namespace zt::telemetry::host {
namespace {

TEST(ProgramEnvironmentTest, TheProgramFileIsAbsoluteAndThere) {
  const std::filesystem::path file = ProgramFile();
  EXPECT_TRUE(file.is_absolute());
  EXPECT_TRUE(std::filesystem::is_regular_file(file));
  EXPECT_EQ(file.stem(), "host_tests");
}

TEST(ProgramEnvironmentTest, APathSurvivesBeingTold) {
  for (const char* text : {"/tmp/Proben für 日本", "relative/file.db", "file", "."}) {
    const std::filesystem::path path = PathFromText(text);
    EXPECT_EQ(PathFromText(PathText(path)), path) << text;
  }
}

TEST(ProgramEnvironmentTest, ARelativePathStaysRelativeAndARootedOneRooted) {
  EXPECT_FALSE(PathFromText("relative/file.db").has_root_directory());
  EXPECT_TRUE(PathFromText("/tmp/file.db").has_root_directory());
}

}  // namespace
}  // namespace zt::telemetry::host
