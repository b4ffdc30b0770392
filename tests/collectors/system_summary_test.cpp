#include "collectors/system_summary.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/collectors/list_helpers.h"
#include "tests/collectors/tool_helpers.h"

namespace {

SystemSummary summary_of(std::initializer_list<Xml> data_types, const char* platform_uuid = "UUID") {
  const CFRef<CFArrayRef> list = list_of(data_types);
  EXPECT_TRUE(list);
  return summarize_system(list.get(), copy_text(platform_uuid));
}

SystemSummary software_summary(const Xml& item) {
  return summary_of({data_type("SPSoftwareDataType", {item})});
}
SystemSummary hardware_summary(const Xml& item) {
  return summary_of({data_type("SPHardwareDataType", {item})});
}
SystemSummary displays_summary(std::initializer_list<Xml> items) {
  return summary_of({data_type("SPDisplaysDataType", items)});
}
SystemSummary disks_summary(std::initializer_list<Xml> controllers) {
  return summary_of({data_type("SPSerialATADataType", controllers)});
}

// ---- Software.

TEST(SystemSummary, NamesHostAndSystem) {
  const SystemSummary summary = software_summary(dict({{"local_host_name", text("office-mac")},
                                                       {"os_version", text("Mac OS X 10.6.8 (10K549)")},
                                                       {"user_name", text("Jane Doe (jdoe)")}}));
  EXPECT_STREQ(summary.host_name.get(), "office-mac");
  EXPECT_STREQ(summary.os_name.get(), "Mac OS X v10.6 (Snow Leopard)");
  EXPECT_STREQ(summary.os_update.get(), "Update 8");
  EXPECT_STREQ(summary.os_version.get(), "10.6.8 (10K549)");
  EXPECT_STREQ(summary.user_name.get(), "jdoe");
}

TEST(SystemSummary, TakesTheUserFromTheFirstBrackets) {
  const auto user = [](const char* name) {
    return software_summary(dict({{"user_name", text(name)}})).user_name;
  };
  EXPECT_STREQ(user("J D (Lee) (jdoe)").get(), "Lee");
  EXPECT_STREQ(user("Jane Doe ()").get(), "");
  EXPECT_STREQ(user(") Jane (jdoe)").get(), "jdoe");
  EXPECT_EQ(user("jdoe"), nullptr);
  EXPECT_EQ(user("Jane Doe (jdoe"), nullptr);
  EXPECT_EQ(user(""), nullptr);
}

// ---- The platform UUID.

const Xml kJdoe = data_type("SPSoftwareDataType", {dict({{"user_name", text("Jane Doe (jdoe)")}})});
const Xml kKnownUuid = data_type("SPHardwareDataType", {dict({{"platform_UUID", text("KNOWN")}})});

TEST(SystemSummary, PrefersTheUuidOfIoreg) {
  const SystemSummary summary = summary_of({kJdoe, kKnownUuid}, "UUID");
  EXPECT_STREQ(summary.platform_uuid.get(), "UUID");
  EXPECT_STREQ(summary.user_name.get(), "jdoe");
}

TEST(SystemSummary, PutsTheProfilersUuidInTheUsersPlace) {
  for (const char* nothing : {"", static_cast<const char*>(nullptr)}) {
    const SystemSummary summary = summary_of({kJdoe, kKnownUuid}, nothing);
    EXPECT_EQ(summary.platform_uuid, nullptr);
    EXPECT_STREQ(summary.user_name.get(), "KNOWN");
  }
}

TEST(SystemSummary, KeepsTheUserWhenNobodyKnowsTheUuid) {
  const SystemSummary summary = summary_of({kJdoe}, "");
  EXPECT_EQ(summary.platform_uuid, nullptr);
  EXPECT_STREQ(summary.user_name.get(), "jdoe");
}

// ---- Hardware.

TEST(SystemSummary, DescribesTheHardware) {
  const SystemSummary summary = hardware_summary(dict({{"packages", integer(2)},
                                                       {"number_processors", integer(8)},
                                                       {"current_processor_speed", text("2.93 GHz")},
                                                       {"cpu_type", text("Quad-Core Intel Xeon")},
                                                       {"machine_model", text("MacPro4,1")},
                                                       {"physical_memory", text("16 GB")}}));
  EXPECT_STREQ(summary.processor_packages.get(), "2");
  EXPECT_STREQ(summary.processor_cores.get(), "16");
  EXPECT_STREQ(summary.clock_speed.get(), "2930");
  EXPECT_STREQ(summary.processor_type.get(), "Quad-Core Intel Xeon");
  EXPECT_STREQ(summary.processor_vendor.get(), "GenuineIntel");
  EXPECT_STREQ(summary.machine_model.get(), "MacPro4,1");
  EXPECT_STREQ(summary.manufacturer.get(), "Apple Inc.");
  EXPECT_STREQ(summary.physical_memory.get(), "16384");
}

TEST(SystemSummary, NamesNoVendorButIntel) {
  const SystemSummary summary = hardware_summary(dict({{"cpu_type", text("PowerPC G5 (3.0)")}}));
  EXPECT_STREQ(summary.processor_type.get(), "PowerPC G5 (3.0)");
  EXPECT_EQ(summary.processor_vendor, nullptr);
}

TEST(SystemSummary, CountsNoCoresWhereTheProfilerHasNoNumber) {
  EXPECT_STREQ(hardware_summary(dict({{"packages", integer(2)}})).processor_cores.get(), "0");
  // Apple silicon reports its cores in a text and has no packages.
  const SystemSummary summary = hardware_summary(dict({{"number_processors", text("proc 8:6:2")}}));
  EXPECT_EQ(summary.processor_packages, nullptr);
  EXPECT_EQ(summary.processor_cores, nullptr);
}

TEST(SystemSummary, PrintsNumbersInThirtyTwoBitsWithoutSign) {
  const auto cores = [](long long packages, long long processors) {
    return hardware_summary(
        dict({{"packages", integer(packages)}, {"number_processors", integer(processors)}}));
  };
  EXPECT_STREQ(cores(2147483648, 1).processor_packages.get(), "2147483648");
  EXPECT_STREQ(cores(4294967295, 1).processor_cores.get(), "4294967295");
  EXPECT_STREQ(cores(4294967296, 1).processor_packages.get(), "4294967295");
  EXPECT_STREQ(cores(INT64_MAX, INT64_MAX).processor_cores.get(), "4294967295");
  EXPECT_STREQ(cores(-1, 4).processor_packages.get(), "0");
  EXPECT_STREQ(cores(-1, 4).processor_cores.get(), "0");
}

TEST(SystemSummary, ReadsTheSpeedsFirstWord) {
  const auto speed = [](const char* value) {
    return std::string(hardware_summary(dict({{"current_processor_speed", text(value)}})).clock_speed.get());
  };
  EXPECT_EQ(speed("2.4 GHz"), "2400");
  EXPECT_EQ(speed("2,4 GHz"), "2000");
  EXPECT_EQ(speed("fast"), "0");
  EXPECT_EQ(speed(""), "0");
  EXPECT_EQ(speed("-1 GHz"), "0");
  EXPECT_EQ(speed("1e300 GHz"), "4294967295");
}

TEST(SystemSummary, ReadsMemoryInMegabytes) {
  const auto memory = [](const char* value) {
    return std::string(hardware_summary(dict({{"physical_memory", text(value)}})).physical_memory.get());
  };
  EXPECT_EQ(memory("512 MB"), "512");
  EXPECT_EQ(memory("1,5 GB"), "1536");
  // Here a TB has 1024 GB.
  EXPECT_EQ(memory("1 TB"), "1048576");
  EXPECT_EQ(memory("GB"), "0");
  EXPECT_EQ(memory("nan GB"), "0");
  EXPECT_EQ(memory("1e30 TB"), "4294967295");
}

// ---- Displays.

// An EDID text with this image size in centimetres.
Xml edid(const char* size) { return text("0x" + std::string(42, '0') + size + "00"); }

TEST(SystemSummary, DescribesTheMainDisplay) {
  const SystemSummary summary = displays_summary(
      {dict({{"spdisplays_vram", text("256 MB")},
             {"spdisplays_ndrvs", array({dict({{"spdisplays_resolution", text("800 x 600")},
                                               {"_spdisplays_edid", edid("221b")}})})}}),
       dict({{"spdisplays_vram", text("512 MB")},
             {"spdisplays_ndrvs", array({dict({{"spdisplays_main", text("spdisplays_no")}}),
                                         dict({{"spdisplays_main", text("spdisplays_yes")},
                                               {"spdisplays_resolution", text("1920 x 1200")},
                                               {"_spdisplays_edid", edid("3420")}}),
                                         dict({{"spdisplays_main", text("spdisplays_yes")},
                                               {"spdisplays_resolution", text("640 x 480")}})})}})});
  EXPECT_STREQ(summary.display_resolution.get(), "1920 x 1200");
  EXPECT_STREQ(summary.display_diagonal.get(), "24");
  // Of the first adapter, whichever drives the main display.
  EXPECT_STREQ(summary.video_memory.get(), "256");
}

Xml attached(std::initializer_list<Xml> displays) { return dict({{"spdisplays_ndrvs", array(displays)}}); }

TEST(SystemSummary, MeasuresTheFirstEdidWhenNoDisplayIsMain) {
  const SystemSummary summary = displays_summary(
      {dict({}), attached({dict({{"spdisplays_resolution", text("800 x 600")}})}),
       attached({dict({{"_spdisplays_edid", edid("291a")}}), dict({{"_spdisplays_edid", edid("3420")}})})});
  EXPECT_EQ(summary.display_resolution, nullptr);
  EXPECT_STREQ(summary.display_diagonal.get(), "19");
}

TEST(SystemSummary, MeasuresNoOtherThanTheMainDisplay) {
  const SystemSummary summary = displays_summary({attached(
      {dict({{"_spdisplays_edid", edid("291a")}}), dict({{"spdisplays_main", text("spdisplays_yes")}})})});
  EXPECT_EQ(summary.display_diagonal, nullptr);
}

Text diagonal(const Xml& edid_text) {
  return displays_summary({attached({dict({{"_spdisplays_edid", edid_text}})})}).display_diagonal;
}

TEST(SystemSummary, RoundsDiagonalsUpAboveFourTenths) {
  EXPECT_STREQ(diagonal(edid("3420")).get(), "24");  // 52 x 32 cm: 24.04
  EXPECT_STREQ(diagonal(edid("291a")).get(), "19");  // 41 x 26 cm: 19.11
  EXPECT_STREQ(diagonal(edid("221b")).get(), "17");  // 34 x 27 cm: 17.09
  EXPECT_STREQ(diagonal(edid("1D12")).get(), "14");  // 29 x 18 cm: 13.44
  EXPECT_STREQ(diagonal(edid("2115")).get(), "15");  // 33 x 21 cm: 15.40
  EXPECT_STREQ(diagonal(edid("0000")).get(), "0");
}

TEST(SystemSummary, GivesNoDiagonalOfAnUnreadableEdid) {
  for (const Xml& unreadable : {text(""), text("0x00ff"), text("0x" + std::string(42, '0')),
                                text("0x" + std::string(42, '0') + "34"), edid("zz20"), integer(7)})
    EXPECT_EQ(diagonal(unreadable), nullptr) << unreadable;
}

TEST(SystemSummary, ReadsNoMemoryInAWord) {
  EXPECT_STREQ(
      displays_summary({dict({{"spdisplays_vram", text("spdisplays_integrated_vram")}})}).video_memory.get(),
      "0");
  EXPECT_EQ(displays_summary({dict({}), dict({{"spdisplays_vram", text("256 MB")}})}).video_memory, nullptr);
}

// ---- Disks.

Xml disk(const char* size, std::initializer_list<Xml> volumes = {}) {
  return dict({{"size", text(size)}, {"volumes", array(volumes)}});
}
Xml volume(const char* size, const char* free) {
  return dict({{"size", text(size)}, {"free_space", text(free)}});
}
Xml controller(std::initializer_list<Xml> disks) { return dict({{"_items", array(disks)}}); }

TEST(SystemSummary, SumsDisksAndVolumesOfAllControllers) {
  const SystemSummary summary = disks_summary(
      {controller({disk("500,11 GB", {volume("200 MB", "0 MB"), volume("499.25 GB", "123.4 GB")}),
                   dict({{"_name", text("Optical drive")}})}),
       controller({}), controller({disk("1 TB", {volume("1 TB", "512 GB")})})});
  // 536 GB and 1099 GB: each disk is cut down to whole GB of 10^9 bytes, and a TB has 1024 GB here.
  EXPECT_STREQ(summary.disk_size.get(), "1635");
  EXPECT_STREQ(summary.volume_size.get(), "1523.4");
  EXPECT_STREQ(summary.volume_free.get(), "635.4");
}

TEST(SystemSummary, CountsNothingWhereThereAreNoDisks) {
  const SystemSummary summary = disks_summary({controller({})});
  EXPECT_STREQ(summary.disk_size.get(), "0");
  EXPECT_STREQ(summary.volume_size.get(), "0.0");
  EXPECT_STREQ(summary.volume_free.get(), "0.0");
}

TEST(SystemSummary, KeepsAbsurdDisksInRange) {
  const SystemSummary summary =
      disks_summary({controller({disk("1e30 TB", {volume("nan GB", "inf GB"), volume("1 GB", "-inf GB")}),
                                 disk("inf GB"), disk("nan GB"), disk("-5 GB")})});
  EXPECT_STREQ(summary.disk_size.get(), "4294967295");
  EXPECT_STREQ(summary.volume_size.get(), "1.0");
  EXPECT_STREQ(summary.volume_free.get(), "0.0");
}

// ---- Lists of another shape.

std::vector<const Text*> text_fields(const SystemSummary& summary) {
  return {&summary.host_name,        &summary.user_name,          &summary.os_name,
          &summary.os_update,        &summary.os_version,         &summary.processor_packages,
          &summary.processor_cores,  &summary.clock_speed,        &summary.processor_type,
          &summary.processor_vendor, &summary.machine_model,      &summary.physical_memory,
          &summary.video_memory,     &summary.display_resolution, &summary.display_diagonal,
          &summary.disk_size,        &summary.volume_size,        &summary.volume_free};
}

void expect_empty(const SystemSummary& summary) {
  for (const Text* field : text_fields(summary)) EXPECT_EQ(*field, nullptr) << field->get();
  EXPECT_STREQ(summary.manufacturer.get(), "Apple Inc.");
  EXPECT_STREQ(summary.platform_uuid.get(), "UUID");
}

TEST(SystemSummary, ReportsOnlyTheMakerWithoutAnyDataType) {
  expect_empty(summarize_system(nullptr, copy_text("UUID")));
  expect_empty(summary_of({}));
  expect_empty(summary_of({data_type("SPSoftwareDataType", {}), data_type("SPHardwareDataType", {}),
                           data_type("SPDisplaysDataType", {})}));
}

TEST(SystemSummary, SkipsWhatIsOfTheWrongKind) {
  const Xml odd_software = dict({{"local_host_name", integer(1)},
                                 {"os_version", array({text("Mac OS X 10.6.8")})},
                                 {"user_name", dict({})}});
  const Xml odd_hardware = dict({{"packages", text("2")},
                                 {"number_processors", integer(2)},
                                 {"current_processor_speed", integer(2)},
                                 {"cpu_type", integer(1)},
                                 {"machine_model", array({})},
                                 {"physical_memory", integer(4)},
                                 {"platform_UUID", integer(4)}});
  const Xml odd_display = dict(
      {{"spdisplays_vram", integer(256)},
       {"spdisplays_ndrvs", array({text("spdisplays_main"), dict({{"spdisplays_main", integer(1)},
                                                                  {"_spdisplays_edid", integer(1)}})})}});
  expect_empty(summary_of({data_type("SPSoftwareDataType", {odd_software}),
                           data_type("SPHardwareDataType", {odd_hardware}),
                           data_type("SPDisplaysDataType", {odd_display}),
                           dict({{"_dataType", text("SPSerialATADataType")}, {"_items", text("none")}})}));
  expect_empty(summary_of({data_type("SPSoftwareDataType", {text("odd")}), text("SPHardwareDataType"),
                           data_type("SPDisplaysDataType", {integer(1)})}));
  const SystemSummary summary = disks_summary(
      {text("disk"), dict({{"_items", text("disk")}}),
       controller({text("disk"), dict({{"size", integer(5)}, {"volumes", dict({{"size", text("1 GB")}})}}),
                   dict({{"volumes", array({text("1 GB"), dict({{"size", integer(1)}})})}}), disk("2 GB")})});
  EXPECT_STREQ(summary.disk_size.get(), "2");
  EXPECT_STREQ(summary.volume_size.get(), "0.0");
}

TEST(SystemSummary, RunsIoregWhenQueried) {
  const FakeTools tools;
  write_printing_tool(tools, "ioreg", "\"IOPlatformUUID\" = \"UUID\"\n");
  const CFRef<CFArrayRef> list = list_of({kKnownUuid});
  EXPECT_STREQ(query_system_summary(list.get()).platform_uuid.get(), "UUID");
}

}  // namespace
