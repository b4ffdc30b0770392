#include "inv/report/report_pictures.h"

#include <gtest/gtest.h>

namespace {

bool holds(const std::string& text, const std::string& part) { return text.find(part) != text.npos; }

TEST(MemoryPicture, DrawsAsManySlotsAsAMacMayHave) {
  EXPECT_TRUE(holds(inv::memory_picture(std::vector<inv::MemorySlot>(64, {"", 1024, ""})), "64 of 64"));
  EXPECT_EQ(inv::memory_picture(std::vector<inv::MemorySlot>(65, {"", 1024, ""})), "");
  EXPECT_EQ(inv::memory_picture({}), "");
}

TEST(VolumeBar, MarksAVolumeFromNinetyPercentOn) {
  const auto bar = [](uint64_t free) { return inv::volume_bar({"HD", "", "", 1000, free, true, ""}); };
  EXPECT_TRUE(holds(bar(100), "class=\"used almost-full\" width=\"90\""));
  EXPECT_TRUE(holds(bar(110), "class=\"used\" width=\"89\""));
}

}  // namespace
