#include "inv/show/table.h"

#include <gtest/gtest.h>

namespace {

TEST(Table, LinesColumnsUp) {
  inv::Table table({{"Name"}, {"Size", true}, {"Note"}});
  table.add({"a", "1", "x"});
  table.add({"caf\xC3\xA9 bar", "1000", ""});
  EXPECT_EQ(table.text(),
            "Name      Size  Note\n"
            "a            1  x\n"
            "caf\xC3\xA9 bar  1000\n");
}

TEST(Table, FitsAWidthWithTheWidestColumnFirstAndTitlesWhole) {
  using inv::GivesWay;
  inv::Table table({{"A", false, GivesWay::end}, {"Long title", false, GivesWay::beginning}, {"Fixed"}});
  table.add({"abcdefgh", "0123456789ab", "whole text"});
  EXPECT_EQ(table.text(34), table.text());
  EXPECT_EQ(table.text(33), "A         Long title   Fixed\nabcdefgh  \u202623456789ab  whole text\n");
  EXPECT_EQ(table.text(28), "A     Long title  Fixed\nabc\u2026  \u20263456789ab  whole text\n");
  EXPECT_EQ(table.text(1), "A  Long title  Fixed\n\u2026  \u20263456789ab  whole text\n");
}

}  // namespace
