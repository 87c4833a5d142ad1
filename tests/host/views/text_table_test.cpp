#include "host/views/text_table.h"

#include <gmock/gmock.h>

namespace zt::telemetry::host {
namespace {

TEST(TextTableTest, TextsStandToTheLeftAndFiguresToTheRightOfTheirColumn) {
  EXPECT_EQ(TableText({"name", "load"}, {{{"a"}, {"7 %", true}}, {{"longer"}, {"100 %", true}}}, 2, 80),
            "  name     load\n"
            "  a         7 %\n"
            "  longer  100 %\n");
}

TEST(TextTableTest, WithoutHeadingsThereIsNoHeadingLine) {
  EXPECT_EQ(TableText({"", ""}, {{{"a"}, {"1"}}, {{"bb"}, {"2"}}}, 0, 80), "a   1\nbb  2\n");
}

TEST(TextTableTest, ColumnsThatDoNotFitFollowInATableThatRepeatsTheFirst) {
  EXPECT_EQ(TableText({"id", "first", "second", "third"}, {{{"x"}, {"1"}, {"2"}, {"3"}}}, 0, 18),
            "id  first  second\n"
            "x   1      2\n"
            "id  third\n"
            "x   3\n");
}

TEST(TextTableTest, ATableMayBeAsWideAsAllowedAndNotWider) {
  const std::vector<std::vector<Cell>> rows = {{{"x"}, {"1"}, {"2"}}};
  EXPECT_EQ(TableText({"id", "first", "second"}, rows, 3, 20), "   id  first  second\n   x   1      2\n");
  EXPECT_EQ(TableText({"id", "first", "second"}, rows, 3, 19), "   id  first\n   x   1\n   id  second\n   x   2\n");
}

TEST(TextTableTest, AColumnWiderThanAllIsShownWholeAllTheSame) {
  const std::string wide(50, 'w');
  EXPECT_EQ(TableText({"id", "text", "n"}, {{{"x"}, {wide}, {"1"}}}, 0, 20),
            "id  text\nx   " + wide + "\nid  n\nx   1\n");
}

TEST(TextTableTest, CharactersBeyondAsciiCountAsOne) {
  EXPECT_EQ(TableText({"°C", "x"}, {{{"日本語"}, {"1"}}}, 0, 80), "°C   x\n日本語  1\n");
}

TEST(TextTableTest, NothingIsShownForNothing) {
  EXPECT_EQ(TableText({}, {}, 4, 80), "");
  EXPECT_EQ(TableText({"a"}, {}, 4, 80), "");
}

TEST(TextTableTest, PrintableTextHasNoControlCharactersAndIsUtf8) {
  EXPECT_EQ(Printable("a\tb\nc\x1b[31m\x7f"), "a b c [31m ");
  EXPECT_EQ(Printable("ab\xff"
                      "c"),
            "ab\xEF\xBF\xBD"
            "c");
  EXPECT_EQ(Printable("日本"), "日本");
}

// Some terminals obey control characters beyond ASCII too: U+009B is what begins a sequence.
TEST(TextTableTest, PrintableTextHasNoControlCharactersBeyondAscii) {
  EXPECT_EQ(Printable("a\xC2\x9B"
                      "31mb\xC2\x80\xC2\x9F\xC2\xA0"),
            "a 31mb  \xC2\xA0");
}

}  // namespace
}  // namespace zt::telemetry::host
