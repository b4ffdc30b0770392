#include "inv/show/show.h"

#include <gtest/gtest.h>

#include "inv/maker.h"

namespace {

std::string shown(std::string_view path, uint32_t depth = inv::kAnyDepth) {
  const auto inventory = maker::open(maker::file());
  std::string text;
  for (const inv::Match& match : inv::find_matches(*inventory->snapshot(), path)) {
    inv::show_match(match, depth, inv::Terminal(), [&](std::string_view piece) { text += piece; });
  }
  return text;
}

TEST(Show, ATagIsShownWithItsPathAboveItsAlignedAttributes) {
  EXPECT_EQ(shown("/Processors"),
            "/Processors\n"
            "  /Processors/Processor:1  Intel Core i7\n"
            "    core-count     4\n"
            "    l2-cache-size  1024\n");
}

TEST(Show, AnAttributeIsShownWithItsWholePath) {
  EXPECT_EQ(shown("/Software/Soft:*/version"),
            "/Software/Soft:1/version  5.1.9\n"
            "/Software/Soft:2/version  [type=unknown]\n");
}

TEST(Show, AnnotationsFollowTheValue) {
  EXPECT_EQ(shown("/Storage/Logical-disks/partition:1/size"),
            "/Storage/Logical-disks/partition:1/size  499.50  [base-value=499500000000]\n");
}

TEST(Show, DepthCountsWhatItLeavesOut) {
  EXPECT_EQ(shown("/Storage", 1), "/Storage\n  /Storage/Logical-disks  (1 below)\n");
  EXPECT_EQ(shown("/Storage", 0), "/Storage  (2 below)\n");
}

TEST(Show, LineEndsInsideValuesAreVisible) {
  EXPECT_EQ(shown("/Software/Soft:2/info"), "/Software/Soft:2/info  one\u21B5two\n");
}

}  // namespace
