#include "tests/endurance/figures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zt::endurance {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

FigureTable Table(const std::vector<Snapshot>& snapshots) {
  FigureTable table;
  for (const Snapshot& snapshot : snapshots) table.Add("a moment", snapshot);
  return table;
}

TEST(FiguresTest, WhatStaysOrShrinksDidNotGrow) {
  EXPECT_THAT(Table({{{"handles", 7, 0}, {"threads", 3, 0}}, {{"handles", 7, 0}, {"threads", 1, 0}}}).Growth(),
              IsEmpty());
}

TEST(FiguresTest, OneMoreIsGrowth) {
  EXPECT_THAT(Table({{{"handles", 7, 0}, {"threads", 3, 0}}, {{"handles", 8, 0}, {"threads", 3, 0}}}).Growth(),
              ElementsAre("handles grew from 7 to 8"));
}

TEST(FiguresTest, AFigureMayGrowByWhatIsAllowed) {
  EXPECT_THAT(Table({{{"bytes", 100, 16}}, {{"bytes", 116, 16}}}).Growth(), IsEmpty());
  EXPECT_THAT(Table({{{"bytes", 100, 16}}, {{"bytes", 117, 16}}}).Growth(), ElementsAre("bytes grew from 100 to 117"));
  EXPECT_THAT(Table({{{"records", 1, kShownOnly}}, {{"records", 1'000'000, kShownOnly}}}).Growth(), IsEmpty());
}

TEST(FiguresTest, WhatGrewAndWentBackDidNotGrow) {
  EXPECT_THAT(Table({{{"handles", 7, 0}}, {{"handles", 99, 0}}, {{"handles", 7, 0}}}).Growth(), IsEmpty());
}

TEST(FiguresTest, TheTableHasALineForEachMoment) {
  EXPECT_EQ(Table({{{"handles", 7, 0}}, {{"handles", 12, 0}}}).Text(),
            "|          | handles |\n| a moment |       7 |\n| a moment |      12 |\n");
}

}  // namespace
}  // namespace zt::endurance
