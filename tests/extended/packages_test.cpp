#include "extended/packages.h"

#include <gtest/gtest.h>

#include "tests/extended/mac.h"

namespace {

constexpr char kHistory[] = "SPInstallHistoryDataType";

TEST(Packages, HaveVersionDateAndSource) {
  Mac mac;
  add_item(mac.additional, kHistory,
           {{"_name", "macOS 15.3"},
            {"install_version", "15.3"},
            {"install_date", "20250102030405.000000+060"},
            {"package_source", "package_source_apple"}});
  add_item(mac.additional, kHistory, {{"_name", "Tool"}});
  add_item(mac.additional, kHistory, {{"install_version", 7}, {"install_date", "2025-01-02 03:04:05"}});
  EXPECT_EQ(written(collect_packages, mac), in_snapshot("+Packages=\n"
                                                        "*Package:1=macOS 15.3\n"
                                                        "version=15.3\n"
                                                        "install-date=20250102030405.000000+060\n"
                                                        "source=package_source_apple\n"
                                                        "*Package:2=Tool\n"
                                                        "*Package:3=\n"
                                                        "version=7\n"
                                                        "install-date=2025-01-02 03:04:05\n"
                                                        "-\n"));
}

TEST(Packages, AreEmptyWithoutHistory) {
  Mac mac;
  add_item(mac.profiler, kHistory, {{"_name", "in the wrong tree"}});
  EXPECT_EQ(written(collect_packages, mac), kEmptySnapshot);
}

}  // namespace
