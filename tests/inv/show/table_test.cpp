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

TEST(Table, CellsThatGiveWayKeepTheirLeast) {
  inv::Table table({{"A", false, inv::GivesWay::end, 5}, {"B", false, inv::GivesWay::end, 2}});
  table.add({"abcdefgh", "12"});
  table.add({"ab", "1"});
  EXPECT_EQ(table.text(1), "A      B\nabcd\u2026  12\nab     1\n");
}

TEST(Table, LeavesOutWhatIsSpareUntilALineFits) {
  using inv::GivesWay;
  inv::Table table({{"Keep", false, GivesWay::end, 6},
                    {"B", false, GivesWay::nothing, 0, 1},
                    {"C", false, GivesWay::nothing, 0, 2}});
  table.add({"abcdefgh", "bbb", "ccc"});
  EXPECT_TRUE(table.leave_out(6 + 2 + 3 + 2 + 3).empty());
  EXPECT_EQ(table.leave_out(15), std::vector<std::string>{"C"});
  EXPECT_EQ(table.text(15), "Keep      B\nabcdefgh  bbb\n");
  EXPECT_EQ(table.leave_out(1), std::vector<std::string>{"B"});
  EXPECT_EQ(table.text(1), "Keep\nabcde\u2026\n");
  EXPECT_TRUE(table.leave_out(0).empty());
}

}  // namespace
