#include "base/trimmed.h"

#include <gtest/gtest.h>

namespace zt::base {
namespace {

TEST(TrimmedTest, BlanksGoAtBothEnds) {
  EXPECT_EQ(Trimmed("  text\t", " \t"), "text");
  EXPECT_EQ(Trimmed("text ", " "), "text");
  EXPECT_EQ(Trimmed(" text", " "), "text");
}

TEST(TrimmedTest, BlanksInsideStay) {
  EXPECT_EQ(Trimmed(" two words ", " "), "two words");
}

TEST(TrimmedTest, OnlyTheNamedCharactersAreBlanks) {
  EXPECT_EQ(Trimmed(" \ttext\n ", " "), "\ttext\n");
  EXPECT_EQ(Trimmed(" text ", ""), " text ");
}

TEST(TrimmedTest, OfBlanksNothingIsLeft) {
  EXPECT_EQ(Trimmed(" \t ", " \t"), "");
  EXPECT_EQ(Trimmed("", " \t"), "");
}

TEST(TrimmedTest, ARuleSaysWhatIsABlank) {
  const auto is_zero = [](char character) { return character == '0'; };
  EXPECT_EQ(TrimmedWhere("00700 0", is_zero), "700 ");
}

}  // namespace
}  // namespace zt::base
