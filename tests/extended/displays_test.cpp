#include "extended/displays.h"

#include <gtest/gtest.h>

#include "tests/extended/mac.h"

namespace {

constexpr char kDisplays[] = "SPDisplaysDataType";

std::string display_lines(const std::string& lines) {
  return in_snapshot("+Video=\n+Displays=\n" + lines + "-\n-\n");
}

// What is written for a display with these keys on an adapter without a name.
std::string written_for(const Item& display) {
  Mac mac;
  add_item(mac.profiler, kDisplays, holding("spdisplays_ndrvs", {display}));
  return written(collect_display_details, mac);
}

TEST(Displays, HaveEveryFactOfADisplayAndItsAdapter) {
  Mac mac;
  add_item(mac.profiler, kDisplays,
           holding("spdisplays_ndrvs",
                   {{{"_name", "Color LCD"},
                     {"_spdisplays_display-vendor-id", "610"},
                     {"_spdisplays_display-product-id", "a04e"},
                     {"_spdisplays_display-year", "2021"},
                     {"_spdisplays_display-week", "7"},
                     {"_spdisplays_display-serial-number", "fd62"},
                     {"spdisplays_connection_type", "spdisplays_internal"},
                     {"spdisplays_display_type", "spdisplays_built-in-liquid-retina-xdr"},
                     {"_spdisplays_resolution", "1512 x 982 @ 120.00Hz"},
                     {"_spdisplays_pixels", "3024 x 1964"},
                     {"spdisplays_main", "spdisplays_yes"},
                     {"spdisplays_mirror", "spdisplays_off"},
                     {"spdisplays_online", "spdisplays_yes"}}},
                   {{"sppci_model", "Graphics 9"},
                    {"_name", "graphics item"},
                    {"spdisplays_vendor", "Maker"},
                    {"_spdisplays_vram", "1536 MB"},
                    {"spdisplays_vram_shared", "1024 MB"},
                    {"spdisplays_mtlgpufamilysupport", "spdisplays_metal3"},
                    {"sppci_bus", "spdisplays_builtin"},
                    {"spdisplays_device-id", "0x3e9b"},
                    {"sppci_cores", "14"}}));
  EXPECT_EQ(written(collect_display_details, mac),
            in_snapshot("+Video=\n"
                        "+Displays=\n"
                        "*display:1=Color LCD\n"
                        "vendor-id=610\n"
                        "product-id=a04e\n"
                        "year=2021\n"
                        "week=7\n"
                        "serial=fd62\n"
                        "connection=spdisplays_internal\n"
                        "display-type=spdisplays_built-in-liquid-retina-xdr\n"
                        "resolution=1512 x 982 @ 120.00Hz\n"
                        "pixels=3024 x 1964\n"
                        "refresh-rate=120.00Hz\n"
                        "built-in=1\n"
                        "main=1\n"
                        "mirrored=0\n"
                        "online=1\n"
                        "adapter=Graphics 9\n"
                        "-\n"
                        "+Details=\n"
                        "*Video-adapter:1=\n"
                        "vendor=Maker\n"
                        "vram=1536 MB\n"
                        "vram-shared=1024 MB\n"
                        "metal=spdisplays_metal3\n"
                        "bus=spdisplays_builtin\n"
                        "device-id=0x3e9b\n"
                        "cores=14\n"
                        "-\n"
                        "-\n"));
}

TEST(Displays, AreNumberedAcrossAdapters) {
  Mac mac;
  add_item(mac.profiler, kDisplays,
           holding("spdisplays_ndrvs", {{{"_name", "A"}}, {{"_name", "B"}}}, {{"sppci_model", "first"}}));
  add_item(mac.profiler, kDisplays, {{"_name", "second"}});
  add_item(mac.profiler, kDisplays,
           holding("spdisplays_ndrvs", {{{"_name", "C"}}}, {{"_name", "third"}, {"sppci_cores", 5}}));
  EXPECT_EQ(written(collect_display_details, mac),
            in_snapshot("+Video=\n+Displays=\n*display:1=A\nadapter=first\n*display:2=B\nadapter=first\n"
                        "*display:3=C\nadapter=third\n-\n+Details=\n*Video-adapter:3=\ncores=5\n-\n-\n"));
}

TEST(Displays, SkipAnEmptyConnector) {
  EXPECT_EQ(written_for({{"_name", "spdisplays_display_connector"},
                         {"spdisplays_status", "spdisplays_not_connected"}}),
            kEmptySnapshot);
  EXPECT_EQ(written_for({{"_name", "spdisplays_display_connector"},
                         {"_spdisplays_edid", "0x00"},
                         {"spdisplays_main", "spdisplays_no"}}),
            display_lines("*display:1=spdisplays_display_connector\nmain=0\n"));
}

TEST(Displays, PreferTheKeysOfNewerSystems) {
  EXPECT_EQ(
      written_for({{"_spdisplays_display-serial-number", "37956"},
                   {"spdisplays_display-serial-number", "EDID1"},
                   {"_spdisplays_resolution", "1920 x 1080 @ 60.00Hz"},
                   {"spdisplays_resolution", "other"}}),
      display_lines("*display:1=\nserial=EDID1\nresolution=1920 x 1080 @ 60.00Hz\nrefresh-rate=60.00Hz\n"));
  EXPECT_EQ(written_for({{"spdisplays_resolution", "1680 x 1050"}}),
            display_lines("*display:1=\nresolution=1680 x 1050\n"));
}

TEST(Displays, HaveNoRefreshRateWithoutOne) {
  EXPECT_EQ(written_for({{"_spdisplays_resolution", "800 x 600"}}),
            display_lines("*display:1=\nresolution=800 x 600\n"));
  EXPECT_EQ(written_for({{"_spdisplays_resolution", "800 x 600 @"}}),
            display_lines("*display:1=\nresolution=800 x 600 @\n"));
}

TEST(Displays, AreBuiltInWhereTheySaySo) {
  EXPECT_EQ(written_for({{"spdisplays_builtin", "spdisplays_yes"}}),
            display_lines("*display:1=\nbuilt-in=1\n"));
  EXPECT_EQ(written_for({{"spdisplays_display_type", "spdisplays_built-in_retinaLCD"}}),
            display_lines("*display:1=\ndisplay-type=spdisplays_built-in_retinaLCD\nbuilt-in=1\n"));
  EXPECT_EQ(written_for({{"spdisplays_connection_type", "spdisplays_hdmi"}}),
            display_lines("*display:1=\nconnection=spdisplays_hdmi\nbuilt-in=0\n"));
  EXPECT_EQ(written_for({{"spdisplays_display_type", "spdisplays_LCD"}}),
            display_lines("*display:1=\ndisplay-type=spdisplays_LCD\n"));
}

TEST(Displays, AreEmptyWithoutTheirDataType) {
  Mac mac;
  EXPECT_EQ(written(collect_display_details, mac), kEmptySnapshot);
}

}  // namespace
