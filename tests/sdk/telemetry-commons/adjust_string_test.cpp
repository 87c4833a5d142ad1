#include <gtest/gtest.h>
#include <utf8.h>

#include <cstddef>
#include <string>

#include "zt/telemetry/common/utils.h"

namespace zt::telemetry::common {
namespace {

constexpr char kReplacement[] = "\xEF\xBF\xBD";

// Characters of one, two, three and four bytes.
constexpr char kMixed[] = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z";
constexpr std::size_t kMixedStarts[] = {0, 1, 3, 6, 10, 11};  // where a character starts, and the end

TEST(AdjustStringTest, ATextWithinTheLimitStaysAsItIs) {
  EXPECT_EQ(Utils::AdjustString("abc", 32), "abc");
  EXPECT_EQ(Utils::AdjustString("abc", 3), "abc");
}

TEST(AdjustStringTest, ALongTextIsCutToTheLimit) {
  EXPECT_EQ(Utils::AdjustString("abcd", 3), "abc");
  EXPECT_EQ(Utils::AdjustString(std::string(129, 'x'), 128), std::string(128, 'x'));
}

TEST(AdjustStringTest, AnEmptyTextIsUnknown) {
  EXPECT_EQ(Utils::AdjustString("", 32), "unknown");
  EXPECT_EQ(Utils::AdjustString(""), "unknown");
}

TEST(AdjustStringTest, UnknownIsNotCut) {
  EXPECT_EQ(Utils::AdjustString("", 3), "unknown");
}

TEST(AdjustStringTest, ALimitOfZeroLeavesNothing) {
  EXPECT_EQ(Utils::AdjustString("abc", 0), "");
}

TEST(AdjustStringTest, ACutNeverGoesThroughACharacter) {
  const std::string text = kMixed;
  ASSERT_EQ(text.size(), 11U);
  for (std::size_t limit = 0; limit <= text.size() + 1; ++limit) {
    std::size_t expected = 0;
    for (const std::size_t start : kMixedStarts) {
      if (start <= limit) expected = start;
    }
    EXPECT_EQ(Utils::AdjustString(text, limit), text.substr(0, expected)) << "limit " << limit;
  }
}

TEST(AdjustStringTest, ACharacterLongerThanTheLimitIsLeftOut) {
  EXPECT_EQ(Utils::AdjustString("\xF0\x9F\x98\x80", 3), "");
}

TEST(AdjustStringTest, AByteThatIsNoCharacterIsReplaced) {
  EXPECT_EQ(Utils::AdjustString("a\xFFz"), std::string("a") + kReplacement + "z");
}

TEST(AdjustStringTest, ACharacterThatBreaksOffAtTheEndIsReplaced) {
  EXPECT_EQ(Utils::AdjustString("a\xE2\x82"), std::string("a") + kReplacement);
}

TEST(AdjustStringTest, AReplacementCountsAgainstTheLimit) {
  EXPECT_EQ(Utils::AdjustString("a\xFFz", 4), std::string("a") + kReplacement);
  EXPECT_EQ(Utils::AdjustString("a\xFFz", 3), "a");
}

TEST(AdjustStringTest, WhateverTheBytesAreTheResultIsValidWithinTheLimit) {
  std::string text;
  for (int first = 0x01; first <= 0xFF; ++first) {
    text += static_cast<char>(first);
    text += static_cast<char>(0xA9);
    text += static_cast<char>(0xFF - first);
  }
  for (unsigned long long limit = 0; limit < 300; ++limit) {
    const std::string adjusted = Utils::AdjustString(text, limit);
    EXPECT_LE(adjusted.size(), limit);
    EXPECT_TRUE(utf8::is_valid(adjusted.begin(), adjusted.end())) << "limit " << limit;
  }
}

TEST(AdjustStringTest, ANulByteIsACharacterLikeAnyOther) {
  const std::string text("a\0b\0c", 5);
  EXPECT_EQ(Utils::AdjustString(text), text);
  EXPECT_EQ(Utils::AdjustString(text, 4), std::string("a\0b\0", 4));
}

TEST(AdjustStringTest, WithoutALimitNothingIsCut) {
  const std::string text(100'000, 'x');
  EXPECT_EQ(Utils::AdjustString(text), text);
}

}  // namespace
}  // namespace zt::telemetry::common
