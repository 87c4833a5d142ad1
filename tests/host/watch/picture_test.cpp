#include "host/watch/picture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zt::telemetry::host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

PictureContents Numbered(std::size_t lines) {
  PictureContents contents;
  contents.title = "watch";
  for (std::size_t i = 1; i <= lines; ++i) contents.lines.lines.push_back({"  line " + std::to_string(i), {}});
  return contents;
}

// How many columns a row takes on a terminal.
std::size_t Columns(const std::string& row) {
  std::size_t columns = 0;
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (row[i] == '\x1b')
      i = row.find('m', i);
    else if ((static_cast<unsigned char>(row[i]) & 0xC0U) != 0x80U)
      ++columns;
  }
  return columns;
}

WindowPlace After(std::initializer_list<TerminalEvent> events, const PictureContents& contents,
                  const TerminalSize& size) {
  WindowPlace place;
  for (const TerminalEvent event : events) MoveWindow(event, contents, size, place);
  return place;
}

TEST(PictureTest, HasARowForEachOfTheTerminalsAndNoneIsWider) {
  PictureContents contents = Numbered(30);
  contents.lines.lines[1].text = "    " + std::string(200, 'x') + "日本";
  contents.lines.lines[1].changed = {{100, 206}};
  contents.failure = std::string(200, 'f');
  for (const TerminalSize& size : {TerminalSize{24, 80}, {5, 20}, {3, 7}, {2, 2}, {1, 1}}) {
    const std::vector<std::string> rows = Picture(contents, size, {});
    ASSERT_EQ(rows.size(), size.rows);
    for (const std::string& row : rows) EXPECT_LE(Columns(row), size.columns) << row;
  }
}

TEST(PictureTest, AChangedLineHasAnAsteriskAndItsCellIsInverted) {
  PictureContents contents = Numbered(2);
  contents.lines.lines[1] = {"    share  53 %", {{11, 15}}};
  const std::vector<std::string> rows = Picture(contents, {6, 40}, {});
  EXPECT_EQ(rows[1], "    line 1");
  EXPECT_EQ(rows[2], "*     share  \x1b[7m53 %\x1b[0m");
}

TEST(PictureTest, AFailureStandsAboveTheLines) {
  PictureContents contents = Numbered(2);
  contents.failure = "the collection failed";
  const std::vector<std::string> rows = Picture(contents, {6, 40}, {});
  EXPECT_THAT(rows[1], HasSubstr("! the collection failed"));
  EXPECT_EQ(rows[2], "    line 1");
}

TEST(PictureTest, TheLowerBarTellsKeysAndPlace) {
  const std::vector<std::string> rows = Picture(Numbered(30), {12, 100}, {5, 0});
  EXPECT_THAT(rows.back(), HasSubstr("q: end"));
  EXPECT_THAT(rows.back(), HasSubstr("lines 6-15 of 30"));
  EXPECT_THAT(rows[1], HasSubstr("line 6"));
}

TEST(PictureTest, WithoutRoomForBothTheBarsShowTheirRightSides) {
  PictureContents contents = Numbered(30);
  contents.pass = "collection 7";
  const std::vector<std::string> rows = Picture(contents, {12, 18}, {});
  EXPECT_EQ(rows.front(), "\x1b[7mwatc  collection 7\x1b[0m");
  EXPECT_EQ(rows.back(), "\x1b[7m  lines 1-10 of 30\x1b[0m");
}

TEST(PictureTest, KeysMoveTheWindowAndItStaysOnTheLines) {
  using Event = TerminalEvent;
  const PictureContents contents = Numbered(30);
  const TerminalSize size{12, 40};  // ten lines in the window
  EXPECT_EQ(After({Event::kDown, Event::kDown, Event::kUp}, contents, size).line, 1U);
  EXPECT_EQ(After({Event::kUp}, contents, size).line, 0U);
  EXPECT_EQ(After({Event::kPageDown}, contents, size).line, 9U);
  EXPECT_EQ(After({Event::kPageDown, Event::kPageDown, Event::kPageDown}, contents, size).line, 20U);
  EXPECT_EQ(After({Event::kLast}, contents, size).line, 20U);
  EXPECT_EQ(After({Event::kLast, Event::kDown}, contents, size).line, 20U);
  EXPECT_EQ(After({Event::kLast, Event::kPageUp}, contents, size).line, 11U);
  EXPECT_EQ(After({Event::kLast, Event::kFirst}, contents, size).line, 0U);
}

TEST(PictureTest, AWindowOnFewerLinesMovesBack) {
  WindowPlace place{20, 0};
  MoveWindow(TerminalEvent::kWoken, Numbered(12), {12, 40}, place);
  EXPECT_EQ(place.line, 2U);
}

TEST(PictureTest, WhatIsWiderThanTheTerminalIsReachedSideways) {
  PictureContents contents = Numbered(1);
  contents.lines.lines[0].text = "    0123456789abcdefghijklmnopqrstuvwxyz";
  const TerminalSize size{4, 22};
  const WindowPlace place = After({TerminalEvent::kRight}, contents, size);
  EXPECT_EQ(Picture(contents, size, place)[1], "  456789abcdefghijklmn");
  EXPECT_EQ(After({TerminalEvent::kRight, TerminalEvent::kRight, TerminalEvent::kRight}, contents, size).column, 20U);
  EXPECT_EQ(After({TerminalEvent::kRight, TerminalEvent::kLeft}, contents, size).column, 0U);
}

TEST(DrawnRowsTest, SendsTheRowsAloneThatAreNotAsTheyWere) {
  DrawnRows drawn;
  EXPECT_THAT(drawn.Update({"a", "b"}), StartsWith("\x1b[2J"));
  EXPECT_EQ(drawn.Update({"a", "c"}), "\x1b[2;1H\x1b[Kc");
  EXPECT_EQ(drawn.Update({"a", "c"}), "");
}

TEST(DrawnRowsTest, SendsAllOnceItForgets) {
  DrawnRows drawn;
  drawn.Update({"a", "b"});
  drawn.Forget();
  EXPECT_EQ(drawn.Update({"a", "b"}), "\x1b[2J\x1b[1;1H\x1b[Ka\x1b[2;1H\x1b[Kb");
}

}  // namespace
}  // namespace zt::telemetry::host
