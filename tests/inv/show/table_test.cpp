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

}  // namespace
