#include "collectors/edid.h"

#include <gtest/gtest.h>

#include "tests/collectors/edid_block.h"

namespace {

EdidInfo decode(const EdidBlock& block) { return decode_edid(block.text().c_str()); }

std::string max_resolution(const EdidBlock& block) { return edid_max_resolution(block.raw()).get(); }

// The modes on one line each: "1280x1024 5:4 60".
std::string modes(const EdidBlock& block) {
  std::string text;
  for (const VideoMode& mode : edid_video_modes(block.raw())) {
    text += std::to_string(mode.width) + "x" + std::to_string(mode.height) + " " + mode.aspect + " " +
            std::to_string(mode.refresh) + "\n";
  }
  return text;
}

TEST(DecodeEdid, SkipsTheFirstTwoCharactersWhateverTheyAre) {
  std::string text = EdidBlock().set(16, {7}).text();
  text[0] = '?';
  text[1] = 'f';
  EXPECT_EQ(decode_edid(text.c_str()).week, 7);
}

TEST(DecodeEdid, ReadsDigitsOfEitherCase) {
  EXPECT_STREQ(decode_edid("0x000000000000000000002Bcd").product_id.get(), "CD2B");
}

TEST(DecodeEdid, ReadsTheManufacturerAsThreeFiveBitLetters) {
  EXPECT_STREQ(decode(EdidBlock().set(8, {0x06, 0x10})).manufacturer.get(), "APP");
  EXPECT_STREQ(decode(EdidBlock().set(8, {0x04, 0x43})).manufacturer.get(), "ABC");
}

TEST(DecodeEdid, LeavesTheUnusedManufacturerBitAside) {
  EXPECT_STREQ(decode(EdidBlock().set(8, {0x84, 0x43})).manufacturer.get(), "ABC");
}

TEST(DecodeEdid, TurnsLetterCodesOutsideTheAlphabetIntoOtherCharacters) {
  EXPECT_STREQ(decode(EdidBlock().set(8, {0x00, 0x1F})).manufacturer.get(), "@@_");
}

TEST(DecodeEdid, SwapsTheBytesOfTheProductCode) {
  EXPECT_STREQ(decode(EdidBlock().set(10, {0xEF, 0xBE})).product_id.get(), "BEEF");
}

TEST(DecodeEdid, PadsTheProductCodeWithBlanks) {
  EXPECT_STREQ(decode(EdidBlock().set(10, {0x2B, 0x0A})).product_id.get(), " A2B");
  EXPECT_STREQ(decode(EdidBlock()).product_id.get(), "   0");
}

TEST(DecodeEdid, KeepsTheSerialNumberInTheOrderOfItsDigits) {
  EXPECT_EQ(decode(EdidBlock().set(12, {0x01, 0x02, 0x03, 0x04})).serial, 0x01020304u);
  EXPECT_EQ(decode(EdidBlock().set(12, {0xFF, 0xFE, 0xFD, 0xFC})).serial, 0xFFFEFDFCu);
}

TEST(DecodeEdid, ReadsTheSingleByteFields) {
  const EdidInfo info = decode(EdidBlock().set(16, {11, 22, 1, 4, 0x95, 52, 32, 120, 0xEA}));
  EXPECT_EQ(info.week, 11);
  EXPECT_EQ(info.year, 2012);
  EXPECT_STREQ(info.version.get(), "1.4");
  EXPECT_EQ(info.video_input, 0x95);
  EXPECT_EQ(info.width_cm, 52);
  EXPECT_EQ(info.height_cm, 32);
  EXPECT_EQ(info.image_width, 52);
  EXPECT_EQ(info.image_height, 32);
  EXPECT_EQ(info.gamma, 2.2);
  EXPECT_EQ(info.features, 0xEA);
}

TEST(DecodeEdid, CountsTheYearsFrom1990ToTheLast) {
  EXPECT_EQ(decode(EdidBlock().set(17, {127})).year, 2117);
  EXPECT_EQ(decode(EdidBlock().set(17, {128})).year, 2118);
  EXPECT_EQ(decode(EdidBlock().set(17, {255})).year, 2245);
}

TEST(DecodeEdid, GivesAnUnstatedGammaNoExemption) {
  EXPECT_EQ(decode(EdidBlock().set(23, {0xFF})).gamma, 3.55);
  EXPECT_EQ(decode(EdidBlock()).gamma, 1.0);
}

TEST(DecodeEdid, ReadsNamesSerialAndRangesFromDescriptors) {
  const EdidInfo info = decode(EdidBlock()
                                   .describe(0, 0xFC, "Screen")
                                   .describe(2, 0xFF, "S-1")
                                   .describe(3, 0xFD, std::string("\x38\x4B\x1E\x51", 4)));
  EXPECT_STREQ(info.monitor_name.get(), "Screen");
  EXPECT_STREQ(info.serial_text.get(), "S-1");
  EXPECT_EQ(info.v_min, 56);
  EXPECT_EQ(info.v_max, 75);
  EXPECT_EQ(info.h_min, 30);
  EXPECT_EQ(info.h_max, 81);
  EXPECT_STREQ(info.v_range_text.get(), "56 - 75");
  EXPECT_STREQ(info.h_range_text.get(), "30 - 81");
}

TEST(DecodeEdid, HasNoTextsAndNoRangesWithoutDescriptors) {
  const EdidInfo info = decode(EdidBlock());
  EXPECT_EQ(info.monitor_name, nullptr);
  EXPECT_EQ(info.serial_text, nullptr);
  EXPECT_EQ(info.v_range_text, nullptr);
  EXPECT_EQ(info.h_range_text, nullptr);
  EXPECT_EQ(info.v_min + info.v_max + info.h_min + info.h_max, 0);
}

TEST(DecodeEdid, PassesOverDescriptorsOfDetailedTimings) {
  EXPECT_EQ(decode(EdidBlock().describe(1, 0xFC, "Name").set(72, {1, 0})).monitor_name, nullptr);
  EXPECT_EQ(decode(EdidBlock().describe(1, 0xFC, "Name").set(72, {0, 1})).monitor_name, nullptr);
}

TEST(DecodeEdid, IgnoresTheThirdByteOfADescriptor) {
  EXPECT_STREQ(decode(EdidBlock().describe(1, 0xFC, "Name").set(74, {9})).monitor_name.get(), "Name");
}

TEST(DecodeEdid, TakesTheLastDescriptorOfAKind) {
  const EdidInfo info = decode(EdidBlock()
                                   .describe(0, 0xFC, "First")
                                   .describe(1, 0xFD, std::string("\x01\x02\x03\x04", 4))
                                   .describe(2, 0xFC, "Last")
                                   .describe(3, 0xFD, std::string("\x05\x06\x07\x08", 4)));
  EXPECT_STREQ(info.monitor_name.get(), "Last");
  EXPECT_STREQ(info.v_range_text.get(), "5 - 6");
  EXPECT_STREQ(info.h_range_text.get(), "7 - 8");
}

TEST(DecodeEdid, TreatsTheFourthDescriptorAsTheLast) {
  EXPECT_STREQ(decode(EdidBlock().describe(2, 0xFC, "Third").describe(3, 0xFC, "Fourth")).monitor_name.get(),
               "Fourth");
}

TEST(DecodeEdid, KeepsLineFeedAndPaddingOfATextUpToTheFirstZeroByte) {
  EXPECT_STREQ(decode(EdidBlock().describe(0, 0xFC, "Cinema\n      ")).monitor_name.get(), "Cinema\n      ");
}

TEST(DecodeEdid, LetsATextRunIntoTheNextDescriptor) {
  const EdidInfo info = decode(EdidBlock().describe(0, 0xFF, "S-1\n         ").set(72, {'x', 'y', 'z', 0}));
  EXPECT_STREQ(info.serial_text.get(), "S-1\n         xyz");
}

TEST(DecodeEdid, EndsATextAtTheEndOfTheBlock) {
  const EdidInfo info = decode(EdidBlock().describe(3, 0xFC, "Thirteen char\x01\x02"));
  EXPECT_STREQ(info.monitor_name.get(), "Thirteen char\x01\x02");
}

TEST(DecodeEdid, GivesAnEmptyTextForADescriptorWithoutOne) {
  EXPECT_STREQ(decode(EdidBlock().describe(1, 0xFC, "")).monitor_name.get(), "");
}

TEST(DecodeEdid, LeavesTheBytesOfAShortTextZero) {
  const std::string text = EdidBlock().set(8, {0x06, 0x10, 0xEF, 0xBE}).set(16, {11, 22}).text();
  const EdidInfo info = decode_edid(text.substr(0, 2 + 2 * 17).c_str());
  EXPECT_STREQ(info.manufacturer.get(), "APP");
  EXPECT_EQ(info.week, 11);
  EXPECT_EQ(info.year, 1990);
  EXPECT_EQ(info.width_cm, 0);
}

TEST(DecodeEdid, DecodesAnyPrefixOfABlock) {
  const std::string text = EdidBlock().describe(3, 0xFC, "Thirteen char\x01\x02").text();
  for (size_t length = 0; length < text.size(); ++length) {
    // A copy of exactly this size, so that reading past its end is noticed.
    const std::string prefix = text.substr(0, length);
    EXPECT_EQ(decode_edid(prefix.c_str()).year, 1990) << length;
  }
}

TEST(DecodeEdid, ReadsNoTextAsAnEmptyOne) {
  for (const char* text : {static_cast<const char*>(nullptr), "", "0", "0x"}) {
    const EdidInfo info = decode_edid(text);
    EXPECT_STREQ(info.manufacturer.get(), "@@@");
    EXPECT_STREQ(info.version.get(), "0.0");
    EXPECT_EQ(info.gamma, 1.0);
    EXPECT_EQ(info.serial, 0u);
  }
}

TEST(DecodeEdid, IgnoresWhatFollowsTheBlock) {
  const std::string text = EdidBlock().describe(3, 0xFC, "Thirteen char\x01\x02").text() + "4142434445";
  EXPECT_STREQ(decode_edid(text.c_str()).monitor_name.get(), "Thirteen char\x01\x02");
}

// The pair of digits for the week replaced by the given two characters.
uint16_t week_of(const char* pair) {
  std::string text = EdidBlock().set(16, {0x99, 22}).text();
  text.replace(2 + 2 * 16, 2, pair);
  const EdidInfo info = decode_edid(text.c_str());
  EXPECT_EQ(info.year, 2012) << "the next byte is not touched";
  return info.week;
}

TEST(DecodeEdid, LeavesAByteThatIsNotHexadecimalZero) {
  EXPECT_EQ(week_of("zz"), 0);
  EXPECT_EQ(week_of("g4"), 0);
  EXPECT_EQ(week_of(" 4"), 0);
  EXPECT_EQ(week_of("-4"), 0);
  EXPECT_EQ(week_of("+4"), 0);
  EXPECT_EQ(week_of("\xC3\xA4"), 0);
}

std::string sized(const std::string& digits) { return "0x" + std::string(42, '0') + digits; }

TEST(EdidImageSize, IsThatOfBytes21And22) {
  const std::optional<ImageSize> size = edid_image_size(sized("3c2201").c_str());
  ASSERT_TRUE(size);
  EXPECT_EQ(size->width_cm, 60u);
  EXPECT_EQ(size->height_cm, 34u);
}

// What one damaged byte makes of a digit.
TEST(EdidImageSize, IsReadAfterABlank) {
  const std::optional<ImageSize> size = edid_image_size(sized(" c 2201").c_str());
  ASSERT_TRUE(size);
  EXPECT_EQ(size->width_cm, 12u);
  EXPECT_EQ(size->height_cm, 34u);
}

TEST(EdidImageSize, NeedsThreeHexadecimalDigits) {
  for (const char* digits : {"", "3", "3c", "x422", "3x22", "3cx2"})
    EXPECT_FALSE(edid_image_size(sized(digits).c_str())) << digits;
  EXPECT_FALSE(edid_image_size(""));
  for (const char* digits : {"3c2", "3c2x"}) {
    const std::optional<ImageSize> size = edid_image_size(sized(digits).c_str());
    ASSERT_TRUE(size) << digits;
    EXPECT_EQ(size->height_cm, 2u) << digits;
  }
}

TEST(DecodeEdid, CountsALoneFirstDigit) {
  EXPECT_EQ(week_of("4g"), 4);
  EXPECT_EQ(week_of("f "), 15);
  EXPECT_EQ(week_of("0x"), 0);
}

TEST(DecodeEdid, CountsALoneLastDigit) {
  EXPECT_STREQ(decode_edid("0x00ffffffffffff0006c").manufacturer.get(), "APL");
}

TEST(EdidMaxResolution, IsEmptyWithoutAnyTiming) { EXPECT_EQ(max_resolution(EdidBlock()), ""); }

TEST(EdidMaxResolution, KnowsEachEstablishedTimingByItsBits) {
  struct {
    size_t byte;
    uint8_t bits;
    const char* resolution;
  } const rows[] = {
      {35, 0x80, "720 x 400"},   {35, 0x40, "720 x 400"},  {35, 0x20, "640 x 480"},  {35, 0x10, "640 x 480"},
      {35, 0x08, "640 x 480"},   {35, 0x04, "640 x 480"},  {35, 0x02, "800 x 600"},  {35, 0x01, "800 x 600"},
      {36, 0x80, "800 x 600"},   {36, 0x40, "800 x 600"},  {36, 0x20, "832 x 624"},  {36, 0x10, "1024 x 768"},
      {36, 0x08, "1024 x 768"},  {36, 0x04, "1024 x 768"}, {36, 0x02, "1024 x 768"}, {37, 0x80, "1152 x 870"},
      {37, 0x01, "1280 x 1024"}, {36, 0x01, ""},           {37, 0x7E, ""},
  };
  for (const auto& row : rows)
    EXPECT_EQ(max_resolution(EdidBlock().set(row.byte, {row.bits})), row.resolution)
        << row.byte << " " << int{row.bits};
}

TEST(EdidMaxResolution, TakesTheLargestEstablishedTiming) {
  EXPECT_EQ(max_resolution(EdidBlock().set(35, {0xFF, 0xFF, 0xFF})), "1280 x 1024");
  EXPECT_EQ(max_resolution(EdidBlock().set(35, {0xFF, 0xFF, 0x80})), "1152 x 870");
  EXPECT_EQ(max_resolution(EdidBlock().set(35, {0xFC, 0, 0})), "640 x 480");
}

TEST(EdidMaxResolution, SkipsAPairWithA1InEitherByte) {
  EXPECT_EQ(max_resolution(EdidBlock().set(38, {0x01, 0x40})), "");
  EXPECT_EQ(max_resolution(EdidBlock().set(38, {0x01, 0x01})), "");
  EXPECT_EQ(max_resolution(EdidBlock().set(38, {0x81, 0x01})), "");
}

TEST(EdidMaxResolution, TakesALargerStandardTimingAndLeavesASmallerOne) {
  EXPECT_EQ(max_resolution(EdidBlock().set(37, {0x80, 0x81, 0x80})), "1280 x 1024");
  EXPECT_EQ(max_resolution(EdidBlock().set(37, {0x80, 0x81, 0xC0})), "1152 x 870");
}

TEST(EdidMaxResolution, PrefersTheLaterOfTwoEquallyLargeTimings) {
  // 1032 x 576 and 864 x 688 have 594432 pixels both.
  EXPECT_EQ(max_resolution(EdidBlock().set(38, {0x62, 0xC0, 0x4D, 0x80})), "864 x 688");
  EXPECT_EQ(max_resolution(EdidBlock().set(38, {0x4D, 0x80, 0x62, 0xC0})), "1032 x 576");
}

TEST(EdidMaxResolution, LooksIntoTheDescriptorsOfStandardTimings) {
  EXPECT_EQ(max_resolution(EdidBlock().set(38, {0x81, 0x80}).describe(3, 0xFA, "\xD1\xC0\x01\x01")),
            "1920 x 1080");
}

TEST(EdidVideoModes, GetsWidthHeightAspectAndRefreshFromAPair) {
  EXPECT_EQ(modes(EdidBlock().set(38, {0xD1, 0x00, 0x81, 0x40, 0x81, 0x80, 0xD1, 0xC0})),
            "1920x1200 16:10 60\n1280x960 4:3 60\n1280x1024 5:4 60\n1920x1080 16:9 60\n");
  EXPECT_EQ(modes(EdidBlock().set(38, {0x81, 0x8F, 0x81, 0xBF})), "1280x1024 5:4 75\n1280x1024 5:4 123\n");
}

TEST(EdidVideoModes, DividesBeforeItMultiplies) {
  // 264 / 16 is 16 and 264 / 5 is 52, the remainders being dropped.
  EXPECT_EQ(modes(EdidBlock().set(38, {0x02, 0x00, 0x02, 0x40, 0x02, 0x80, 0x02, 0xC0})),
            "264x160 16:10 60\n264x198 4:3 60\n264x208 5:4 60\n264x144 16:9 60\n");
}

TEST(EdidVideoModes, CountsAPairOfZerosAsAMode) {
  EXPECT_EQ(modes(EdidBlock().set(52, {0x00, 0x00})), "248x150 16:10 60\n");
}

TEST(EdidVideoModes, ReachesTheLargestWidth) {
  EXPECT_EQ(modes(EdidBlock().set(38, {0xFF, 0xFF})), "2288x1287 16:9 123\n");
}

TEST(EdidVideoModes, SkipsAPairWithA1InEitherByte) {
  EXPECT_EQ(modes(EdidBlock().set(38, {0x01, 0x40, 0x01, 0x01, 0x81, 0x01})), "");
}

TEST(EdidVideoModes, ListsTheBlocksOwnPairsBeforeThoseOfItsDescriptors) {
  const std::string six_pairs = "\x31\x40\x45\x40\x61\x40\x71\x40\x81\x40\xA9\x40";
  const EdidBlock block = EdidBlock()
                              .set(52, {0x81, 0x80})
                              .describe(0, 0xFA, six_pairs)
                              .describe(2, 0xFA, "\xD1\xC0\x01\x01\x01\x01\x01\x01\x01\x01\xB3\x02");
  EXPECT_EQ(modes(block),
            "1280x1024 5:4 60\n640x480 4:3 60\n800x600 4:3 60\n1024x768 4:3 60\n1152x864 4:3 60\n"
            "1280x960 4:3 60\n1600x1200 4:3 60\n1920x1080 16:9 60\n1680x1050 16:10 62\n");
}

TEST(EdidVideoModes, ListsTheDescriptorsInTheirOrder) {
  EdidBlock block;
  for (const size_t descriptor : {size_t{3}, size_t{2}, size_t{1}, size_t{0}})
    block.describe(descriptor, 0xFA,
                   std::string(1, static_cast<char>(2 + descriptor)) + "\x40" +
                       "\x01\x01\x01\x01\x01\x01\x01\x01\x01\x01");
  EXPECT_EQ(modes(block), "264x198 4:3 60\n272x204 4:3 60\n280x210 4:3 60\n288x216 4:3 60\n");
}

TEST(EdidVideoModes, TakesNoPairsFromOtherDescriptors) {
  const std::string pairs = "\x31\x40\x45\x40\x61\x40\x71\x40\x81\x40\xA9\x40";
  EXPECT_EQ(modes(EdidBlock().describe(0, 0xFB, pairs).describe(1, 0xFA, pairs).set(72, {1})), "");
}

TEST(DecodeEdid, CarriesMaximumResolutionAndModes) {
  const EdidInfo info = decode(EdidBlock().set(38, {0xB3, 0x00}));
  EXPECT_STREQ(info.max_resolution.get(), "1680 x 1050");
  ASSERT_EQ(info.modes.size(), 1u);
  EXPECT_EQ(info.modes[0].width, 1680u);
}

}  // namespace
