#include "inv/file/fault.h"

#include <gtest/gtest.h>

namespace {

TEST(Fault, NamesItsByte) { EXPECT_EQ(inv::describe({"it is damaged", 7}), "at byte 7: it is damaged"); }

TEST(Fault, NamesItsLineFromTheFirstOn) {
  EXPECT_EQ(inv::describe({"it is damaged", 7, 1, 0}),
            "at byte 7 (line 1, byte 0 of the text): it is damaged");
  EXPECT_EQ(inv::describe({"it is damaged", 7, 3, 40}),
            "at byte 7 (line 3, byte 40 of the text): it is damaged");
}

}  // namespace
