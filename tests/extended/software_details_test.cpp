#include "extended/software_details.h"

#include <gtest/gtest.h>

#include "tests/extended/mac.h"

namespace {

constexpr char kApplications[] = "SPApplicationsDataType";

std::string software(const std::string& lines) { return in_snapshot("+Software-details=\n" + lines + "-\n"); }

TEST(SoftwareDetails, HaveArchitectureSourceAndSigners) {
  Mac mac;
  add_item(mac.profiler, kApplications,
           {{"_name", "Chess"},
            {"arch_kind", "arch_arm_i64"},
            {"obtained_from", "apple"},
            {"signed_by/item0", "Software Signing"},
            {"signed_by/item1", "Apple Root CA"}});
  EXPECT_EQ(
      written(collect_software_details, mac),
      software(
          "*Soft:1=\narchitecture=arch_arm_i64\nsource=apple\nsigned-by=Software Signing, Apple Root CA\n"));
}

TEST(SoftwareDetails, HaveNoSignersWithoutPeople) {
  Mac mac;
  mac.with_people = false;
  add_item(mac.profiler, kApplications,
           {{"arch_kind", "arch_arm_i64"}, {"obtained_from", "apple"}, {"signed_by/item0", "Some Person"}});
  EXPECT_EQ(written(collect_software_details, mac),
            software("*Soft:1=\narchitecture=arch_arm_i64\nsource=apple\n"));
}

TEST(SoftwareDetails, KeepTheNumbersOfTheApplications) {
  Mac mac;
  add_item(mac.profiler, kApplications, {{"_name", "Old"}});
  add_item(mac.profiler, kApplications, {{"obtained_from", "unknown"}, {"signed_by", "nobody"}});
  EXPECT_EQ(written(collect_software_details, mac), software("*Soft:2=\nsource=unknown\n"));
}

TEST(SoftwareDetails, AreEmptyOnOldSystems) {
  Mac mac;
  EXPECT_EQ(written(collect_software_details, mac), kEmptySnapshot);
  add_item(mac.profiler, kApplications, {{"_name", "Old"}});
  EXPECT_EQ(written(collect_software_details, mac), kEmptySnapshot);
}

}  // namespace
