#include "base/loaded_library.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <utility>

namespace zt::base {
namespace {

using Count = int();

// The build's path has no drive where it was made on another system.
LoadedLibrary LoadCounting() {
  return LoadedLibrary::OfFile(std::filesystem::absolute(ZT_COUNTING_LIBRARY));
}

TEST(LoadedLibraryTest, HasTheFunctionsThatItExportsAndNoOther) {
  const LoadedLibrary library = LoadCounting();
  ASSERT_TRUE(library);
  ASSERT_NE(library.Find<Count>("CountCall"), nullptr);
  EXPECT_EQ(library.Find<Count>("CountCall")(), 1);
  EXPECT_EQ(library.Find<Count>("CountCal"), nullptr);
}

TEST(LoadedLibraryTest, ThatIsMissingHasNoFunction) {
  EXPECT_FALSE(LoadedLibrary());
  EXPECT_EQ(LoadedLibrary().Find<Count>("CountCall"), nullptr);
  const LoadedLibrary library = LoadedLibrary::OfFile(std::filesystem::absolute(ZT_COUNTING_LIBRARY "-not-there"));
  EXPECT_FALSE(library);
  EXPECT_EQ(library.Find<Count>("CountCall"), nullptr);
  EXPECT_FALSE(LoadedLibrary::OfSystem("zt-no-such-library"));
  EXPECT_FALSE(LoadedLibrary::Search("zt-no-such-library", 0));
}

TEST(LoadedLibraryTest, IsUnloadedWithTheLastThatUsesIt) {
  LoadedLibrary first = LoadCounting();
  EXPECT_EQ(first.Find<Count>("CountCall")(), 1);
  {
    const LoadedLibrary second = LoadCounting();
    EXPECT_EQ(second.Find<Count>("CountCall")(), 2);
  }
  EXPECT_EQ(first.Find<Count>("CountCall")(), 3) << "the second owner unloaded the first one's";
  first = {};
  EXPECT_EQ(LoadCounting().Find<Count>("CountCall")(), 1) << "it was not unloaded";
}

TEST(LoadedLibraryTest, StaysLoadedWhenItIsGivenToTheProcess) {
  LoadedLibrary library = LoadCounting();
  EXPECT_EQ(library.Find<Count>("CountCall")(), 1);
  std::move(library).StayLoaded();
  EXPECT_FALSE(library);  // NOLINT(bugprone-use-after-move): given up, it owns none
  EXPECT_EQ(LoadCounting().Find<Count>("CountCall")(), 2);
}

}  // namespace
}  // namespace zt::base
