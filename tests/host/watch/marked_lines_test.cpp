#include "host/watch/marked_lines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zt::telemetry::host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<std::string> kBefore = {
    "SENT Record  5CG_2026-03-07T12:20:42  2026-03-07 12:20:42  1 sample",
    "  Memory",
    "    physical memory in use    9,179,869 kB",
    "    share of physical memory  53.43 %",
    "  Processes",
    "    process     status    CPU     memory",
    "    video-call  running  13 %    500 MiB",
    "    compiler    running   9 %    117 MiB",
    "",
};

std::vector<std::string> Changed(std::size_t line, const std::string& text) {
  std::vector<std::string> lines = kBefore;
  lines[line] = text;
  return lines;
}

// The texts of what is marked, each with its line.
std::vector<std::string> Marks(const std::vector<std::string>& now, const std::vector<std::string>& before = kBefore) {
  std::vector<std::string> marks;
  const MarkedLines marked = MarkChanges(now, before);
  for (std::size_t i = 0; i < marked.lines.size(); ++i) {
    for (const LinePart& part : marked.lines[i].changed) {
      marks.push_back(std::to_string(i) + " " + marked.lines[i].text.substr(part.begin, part.end - part.begin));
    }
  }
  return marks;
}

TEST(MarkedLinesTest, WhatIsAsItWasIsNotMarked) {
  EXPECT_THAT(Marks(kBefore), IsEmpty());
  EXPECT_EQ(MarkChanges(kBefore, kBefore).gone, 0U);
}

TEST(MarkedLinesTest, TheChangedCellAloneIsMarked) {
  EXPECT_THAT(Marks(Changed(3, "    share of physical memory  54.1 %")), ElementsAre("3 54.1 %"));
  EXPECT_THAT(Marks(Changed(6, "    video-call  running  14 %    500 MiB")), ElementsAre("6 14 %"));
}

TEST(MarkedLinesTest, TheTimeInAHeadingIsNoChange) {
  EXPECT_THAT(Marks(Changed(0, "SENT Record  5CG_2026-03-07T12:20:47  2026-03-07 12:20:47  1 sample")), IsEmpty());
}

TEST(MarkedLinesTest, ARowThatHasMovedIsTheSameRow) {
  std::vector<std::string> now = kBefore;
  std::swap(now[6], now[7]);
  EXPECT_THAT(Marks(now), IsEmpty());
}

TEST(MarkedLinesTest, ARowThatWasNotThereIsMarkedAsAWhole) {
  std::vector<std::string> now = kBefore;
  now.insert(now.begin() + 7, "    editor      running   1 %     80 MiB");
  EXPECT_THAT(Marks(now), ElementsAre("7 editor", "7 running", "7 1 %", "7 80 MiB"));
}

TEST(MarkedLinesTest, ARowInThePlaceOfAnotherIsComparedWithIt) {
  EXPECT_THAT(Marks(Changed(6, "    editor      running  13 %    500 MiB")), ElementsAre("6 editor"));
}

TEST(MarkedLinesTest, ACellThatHasComeIsTheOneThatIsMarked) {
  EXPECT_THAT(Marks(Changed(7, "    compiler    running   9 %    117 MiB  yes")), ElementsAre("7 yes"));
}

TEST(MarkedLinesTest, RowsOfOneNameAreToldApartByTheirOrder) {
  const std::vector<std::string> before = {"SENT R", "  Cards", "    card  1 %", "    card  2 %"};
  EXPECT_THAT(Marks({"SENT R", "  Cards", "    card  1 %", "    card  3 %"}, before), ElementsAre("3 3 %"));
}

TEST(MarkedLinesTest, TheSameSectionOfAnotherRecordIsAnotherOne) {
  const std::vector<std::string> before = {"STORED S", "  Memory", "    used  1", "SENT R", "  Memory", "    used  2"};
  EXPECT_THAT(Marks({"STORED S", "  Memory", "    used  2", "SENT R", "  Memory", "    used  2"}, before),
              ElementsAre("2 2"));
}

TEST(MarkedLinesTest, RowsAndSectionsThatAreNoMoreAreCounted) {
  std::vector<std::string> now = kBefore;
  now.erase(now.begin() + 7);
  EXPECT_EQ(MarkChanges(now, kBefore).gone, 1U);
  now.erase(now.begin() + 1, now.begin() + 4);
  EXPECT_EQ(MarkChanges(now, kBefore).gone, 3U);
  EXPECT_EQ(MarkChanges(kBefore, now).Changed(), 3U);
}

}  // namespace
}  // namespace zt::telemetry::host
