#include "zt/text/wide_text.h"

#include <gtest/gtest.h>

namespace zt::text {
namespace {

constexpr char kReplacement[] = "\xEF\xBF\xBD";
constexpr wchar_t kWideReplacement[] = L"\xFFFD";
constexpr char kAstral[] = "\xF0\x9F\x98\x80";  // U+1F600

std::wstring Wide(std::initializer_list<unsigned> units) {
  std::wstring text;
  for (const unsigned unit : units) text += static_cast<wchar_t>(unit);
  return text;
}

TEST(WideTextTest, PlainTextGoesBothWays) {
  EXPECT_EQ(ToUtf8(L"Win32_DiskDrive"), "Win32_DiskDrive");
  EXPECT_EQ(ToWide("Win32_DiskDrive"), L"Win32_DiskDrive");
}

TEST(WideTextTest, AnEmptyTextIsEmpty) {
  EXPECT_EQ(ToUtf8(L""), "");
  EXPECT_EQ(ToWide(""), L"");
}

TEST(WideTextTest, EachLengthOfCharacterGoesBothWays) {
  const std::wstring wide = Wide({0x7F, 0x80, 0x7FF, 0x800, 0xD7FF, 0xE000, 0xFFFD});
  const std::string narrow = "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBD";
  EXPECT_EQ(ToUtf8(wide), narrow);
  EXPECT_EQ(ToWide(narrow), wide);
}

TEST(WideTextTest, AnAstralCharacterGoesBothWays) {
  const std::wstring wide = sizeof(wchar_t) == 2 ? Wide({'a', 0xD83D, 0xDE00, 'z'}) : Wide({'a', 0x1F600, 'z'});
  const std::string narrow = std::string("a") + kAstral + "z";
  EXPECT_EQ(ToUtf8(wide), narrow);
  EXPECT_EQ(ToWide(narrow), wide);
}

TEST(WideTextTest, TheLastCharacterOfAllGoesBothWays) {
  const std::string narrow = "\xF4\x8F\xBF\xBF";
  EXPECT_EQ(ToUtf8(ToWide(narrow)), narrow);
}

TEST(WideTextTest, ASurrogatePairIsOneCharacter) {
  EXPECT_EQ(ToUtf8(Wide({0xD83D, 0xDE00})), kAstral);
}

TEST(WideTextTest, ALeadingSurrogateAloneIsReplaced) {
  EXPECT_EQ(ToUtf8(Wide({0xD83D})), kReplacement);
  EXPECT_EQ(ToUtf8(Wide({0xD83D, 'z'})), std::string(kReplacement) + "z");
}

TEST(WideTextTest, ATrailingSurrogateAloneIsReplaced) {
  EXPECT_EQ(ToUtf8(Wide({'a', 0xDE00})), std::string("a") + kReplacement);
  EXPECT_EQ(ToUtf8(Wide({0xDE00, 0xDE00})), std::string(kReplacement) + kReplacement);
}

TEST(WideTextTest, TwoLeadingSurrogatesKeepThePairOfTheSecond) {
  EXPECT_EQ(ToUtf8(Wide({0xD83D, 0xD83D, 0xDE00})), std::string(kReplacement) + kAstral);
}

TEST(WideTextTest, SurrogatesInTheWrongOrderAreReplacedOneByOne) {
  EXPECT_EQ(ToUtf8(Wide({0xDE00, 0xD83D})), std::string(kReplacement) + kReplacement);
}

TEST(WideTextTest, TheFirstAndTheLastSurrogatesOfEachKindAreTakenForWhatTheyAre) {
  EXPECT_EQ(ToUtf8(Wide({0xD800, 0xDC00})), "\xF0\x90\x80\x80");
  EXPECT_EQ(ToUtf8(Wide({0xDBFF, 0xDFFF})), "\xF4\x8F\xBF\xBF");
  EXPECT_EQ(ToUtf8(Wide({0xDC00, 0xDC00})), std::string(kReplacement) + kReplacement);
  EXPECT_EQ(ToUtf8(Wide({0xD800, 0xDBFF})), std::string(kReplacement) + kReplacement);
  EXPECT_EQ(ToUtf8(Wide({0xD800, 0xE000})), std::string(kReplacement) + "\xEE\x80\x80");
  EXPECT_EQ(ToUtf8(Wide({0xD7FF, 0xDFFF})), std::string("\xED\x9F\xBF") + kReplacement);
}

TEST(WideTextTest, AByteThatIsNoCharacterIsReplaced) {
  EXPECT_EQ(ToWide("a\xFFz"), std::wstring(L"a") + kWideReplacement + L"z");
  EXPECT_EQ(ToWide("\x80"), kWideReplacement);
}

TEST(WideTextTest, ACharacterThatBreaksOffIsReplaced) {
  EXPECT_EQ(ToWide("a\xF0\x9F\x98"), std::wstring(L"a") + kWideReplacement);
  EXPECT_EQ(ToWide("\xE2\x82z"), std::wstring(kWideReplacement) + L"z");
}

TEST(WideTextTest, AnEncodedSurrogateGivesNoSurrogate) {
  for (const wchar_t character : ToWide("a\xED\xA0\xBDz")) {
    EXPECT_FALSE(character >= 0xD800 && character < 0xE000);
  }
  EXPECT_EQ(ToWide("a\xED\xA0\xBDz").front(), L'a');
  EXPECT_EQ(ToWide("a\xED\xA0\xBDz").back(), L'z');
}

TEST(WideTextTest, AnOverlongCharacterIsNotTakenForItsShortForm) {
  EXPECT_EQ(ToWide("\xC0\xAF").find(L'/'), std::wstring::npos);
}

TEST(WideTextTest, ANumberBeyondTheLastCharacterIsReplaced) {
  EXPECT_EQ(ToUtf8(ToWide("\xF4\x90\x80\x80")).substr(0, 3), kReplacement);
}

TEST(WideTextTest, AUnitBeyondTheLastCharacterIsReplaced) {
  if (sizeof(wchar_t) == 2) GTEST_SKIP() << "no unit is as large";
  EXPECT_EQ(ToUtf8(Wide({'a', 0x110000, 'z'})), std::string("a") + kReplacement + "z");
  EXPECT_EQ(ToUtf8(Wide({0x7FFFFFFF})), kReplacement);
}

TEST(WideTextTest, ANulIsACharacterLikeAnyOther) {
  EXPECT_EQ(ToUtf8(std::wstring(L"a\0b", 3)), std::string("a\0b", 3));
  EXPECT_EQ(ToWide(std::string("a\0b", 3)), std::wstring(L"a\0b", 3));
}

}  // namespace
}  // namespace zt::text
