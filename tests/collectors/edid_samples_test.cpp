// Blocks of real monitors, which are kept outside the repository, since they contain serial
// numbers.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <string>

#include "collectors/edid.h"

namespace {

// The profiler's text of each block by its origin.
std::map<std::string, std::string> read_samples() {
  std::map<std::string, std::string> samples;
  std::ifstream file(PROJECT_ROOT "/../shared/samples/edid.tsv");
  for (std::string line; std::getline(file, line);) {
    const size_t tab = line.find('\t');
    if (tab != std::string::npos) samples[line.substr(0, tab)] = "0x" + line.substr(tab + 1);
  }
  return samples;
}

class EdidSamples : public testing::Test {
 protected:
  void SetUp() override {
    if (samples_.empty()) GTEST_SKIP() << "the samples are not here";
  }

  const std::map<std::string, std::string> samples_ = read_samples();
};

TEST_F(EdidSamples, AllDecodeToPlausibleMonitors) {
  EXPECT_EQ(samples_.size(), 115u);
  for (const auto& [origin, text] : samples_) {
    SCOPED_TRACE(origin);
    const EdidInfo info = decode_edid(text.c_str());
    // The origin reads ".../MANUFACTURER and product/hash": "Digital/Apple/APP9C5F/9DC2ADDBA12C".
    const std::string product = origin.substr(origin.rfind('/') - 7, 7);
    EXPECT_EQ(product.substr(0, 3), info.manufacturer.get());
    EXPECT_EQ(std::stoul(product.substr(3), nullptr, 16), std::stoul(info.product_id.get(), nullptr, 16));
    EXPECT_STREQ(std::string(info.version.get()).substr(0, 2).c_str(), "1.");
    EXPECT_GE(info.year, 2000);
    EXPECT_LE(info.year, 2026);
    EXPECT_LE(info.modes.size(), 8u);
  }
}

// Worked out by hand from the bytes; `name` is everything up to the first zero byte.
struct Expected {
  const char* origin;
  const char* manufacturer;
  const char* product_id;
  const char* name;  // may be null
  int week;
  int year;
  int width_cm;
  int height_cm;
  const char* max_resolution;
};

constexpr const char* kNone = nullptr;

constexpr Expected kExpected[] = {
    // A text, the ranges, the name, and then no extension block, whose count of zero ends the name.
    {"Analog/AMW/AMW1702/D95921690922", "AMW", "1702", "M177TD\n      ", 51, 2004, 34, 27, "1280 x 1024"},
    // Three detailed timings before the name; a letter beyond Z; a product code of zero.
    {"Analog/AQ_/AQ_0000/5587848713D1", "AQ_", "   0", "M185XTN01.2  ", 2, 2014, 41, 23, "1024 x 768"},
    // Two names; established timings only.
    {"Analog/AU Optronics/DMO162D/67D23C6B6E24", "DMO", "162D", "ST5WoNiRGB43 ", 11, 2014, 34, 27,
     "1152 x 870"},
    // Four detailed timings; all eight standard timings, the largest one first.
    {"Analog/CCT/CCT0101/889A0549B8DB", "CCT", " 101", kNone, 39, 2010, 88, 50, "1920 x 1080"},
    // The name before the ranges and the serial number; 1600 x 1200 outdoes the wider 1680 x 1050.
    {"Analog/HannStar/HSD3FB8/F59D51B12CD6", "HSD", "3FB8", "HP222\n       ", 37, 2010, 47, 30,
     "1600 x 1200"},
    // A name of thirteen characters without a line feed.
    {"Analog/Vizio/VIZ0042/7FC2D9FCF4DA", "VIZ", "  42", "VO32L HDTV10A", 33, 2008, 70, 39, "1024 x 768"},
    // An empty descriptor and one with a tag of the maker's own; no week.
    {"Digital/AU Optronics/AUO149B/454046FC0244", "AUO", "149B", kNone, 0, 2017, 38, 21, ""},
    // A name that runs on over extension count and checksum to the end of the block.
    {"Digital/ASUS/AUS2421/84D4BF436C1F", "AUS", "2421", "ASUS VG249\n  \x01\xDB", 40, 2021, 53, 30,
     "1680 x 1050"},
    // The same after a full name; an established timing, and the largest standard timing last.
    {"Digital/IDV/IDVED11/E6D95E923A7A", "IDV", "ED11", "AOC28E850.HDR\x01U", 3, 2017, 62, 34, "1920 x 1200"},
    // A name in two descriptors, of which the second one counts; zeros after its line feed.
    {"Digital/Apple/APP921F/DE97BEC1EDE0", "APP", "921F", "play\n", 34, 2004, 49, 31, "1920 x 1200"},
    // Texts instead of a name; no timings at all.
    {"Digital/Apple/APP9C5F/9DC2ADDBA12C", "APP", "9C5F", kNone, 8, 2006, 29, 18, ""},
    // A bit in the third byte of the established timings that means nothing.
    {"Digital/Apple/APP9C65/5F61E9EA1609", "APP", "9C65", "Color LCD\n   ", 0, 2006, 52, 32, ""},
    // A name followed by two dummy descriptors.
    {"Digital/Apple/APPA019/BD1FC55FA245", "APP", "A019", "Color LCD\n   ", 48, 2012, 33, 21, ""},
    // No image size.
    {"Digital/DEXP/DXP0000/B12DF341E276", "DXP", "   0", "F22F7000K\n   \x01\xAF", 6, 2016, 0, 0,
     "1920 x 1080"},
    // Week 255; an unused pair of the form 0x01 0x00.
    {"Digital/EQD/EQD2763/5500629187C1", "EQD", "2763",
     "EQ276WN\n     \x01"
     "B",
     255, 2013, 60, 34, "1920 x 1080"},
    // The name before the ranges; 720 x 576 among the standard timings.
    {"Digital/GBE/GBE0001/9C662CC9D515", "GBE", "   1", "hdmi\n        ", 8, 2008, 115, 65, "1920 x 1080"},
    // Every pair is unused, each by another of its bytes.
    {"Digital/WES/WES0030/9DB0B1C022D5", "WES", "  30", "WD50UC4300\n  ", 26, 2015, 109, 61, ""},
    // A headset: the same detailed timing twice, a range up to 255.
    {"Digital/HVR/HVRAA03/EB681E7683EC", "HVR", "AA03", "VIVE Cosmos\n ", 8, 2018, 12, 7, ""},
    // The lowest bit of the third established byte.
    {"Digital/IBM/IBM1A00/102159C45966", "IBM", "1A00", "IBM T560\n    ", 12, 2002, 30, 23, "1280 x 1024"},
    // 640 x 480 and nothing else, though it is a large screen.
    {"Digital/Microsoft/MSH0001/39FD291EC47A", "MSH", "   1", "Xbox One\n    ", 30, 2013, 121, 68,
     "640 x 480"},
};

TEST_F(EdidSamples, TwentyDecodeAsTheirBytesSay) {
  for (const Expected& expected : kExpected) {
    SCOPED_TRACE(expected.origin);
    ASSERT_EQ(samples_.count(expected.origin), 1u);
    const EdidInfo info = decode_edid(samples_.at(expected.origin).c_str());
    EXPECT_STREQ(info.manufacturer.get(), expected.manufacturer);
    EXPECT_STREQ(info.product_id.get(), expected.product_id);
    EXPECT_STREQ(info.monitor_name.get(), expected.name);
    EXPECT_EQ(info.week, expected.week);
    EXPECT_EQ(info.year, expected.year);
    EXPECT_EQ(info.width_cm, expected.width_cm);
    EXPECT_EQ(info.height_cm, expected.height_cm);
    EXPECT_STREQ(info.max_resolution.get(), expected.max_resolution);
  }
}

}  // namespace
