#include "inv/report/fleet_page.h"

#include <gtest/gtest.h>

#include "inv/maker.h"

namespace {

inv::FleetMachine machine(const std::string& name, const std::string& time = "2012-01-18T13:30:45Z") {
  inv::FleetMachine machine;
  machine.identity = machine.name = machine.serial = name;
  machine.model = "iMac11,1";
  machine.time = time;
  machine.day = 15'357;
  return machine;
}

std::string fleet_page(const std::string& title, const std::vector<inv::FleetMachine>& machines,
                       int64_t today) {
  return maker::written([&](const inv::TextSink& sink) { inv::fleet_page(title, machines, today, sink); });
}

bool holds(const std::string& page, const std::string& text) { return page.find(text) != std::string::npos; }

TEST(FleetPage, CountsMachinesByWhatTheyAre) {
  const std::string page = fleet_page("Fleet", {machine("A"), machine("B")}, 15'360);
  EXPECT_TRUE(holds(page, "<p>2 machines</p>"));
  EXPECT_TRUE(holds(page, "<bdi>iMac11,1</bdi></span>"));
  EXPECT_TRUE(holds(page, "<bdi>up to a week</bdi>"));
  EXPECT_TRUE(holds(page, "<p>Nothing.</p>"));
}

TEST(FleetPage, TellsWhatStandsOut) {
  inv::FleetMachine old = machine("A");
  old.damaged = true;
  const std::string page = fleet_page("Fleet", {old}, 15'357 + 31);
  EXPECT_TRUE(holds(page, "<bdi>its file is damaged</bdi>, <bdi>its scan is 31 days old</bdi>"));
  EXPECT_FALSE(holds(fleet_page("Fleet", {machine("A")}, 15'357 + 30), "days old"));
}

inv::Volume volume(const std::string& name, uint64_t percent_used, const std::string& container = "") {
  inv::Volume volume;
  volume.name = name;
  volume.bytes = 100;
  volume.free_bytes = 100 - percent_used;
  volume.knows_free = true;
  volume.container = container;
  return volume;
}

TEST(FleetPage, DisksThatFillUpComeWithTheFullestFirst) {
  inv::FleetMachine one = machine("A"), other = machine("B");
  one.volumes = {volume("Spare", 89), volume("Work", 90)};
  other.volumes = {volume("System", 97, "disk3"), volume("Data", 97, "disk3")};
  const std::string page = fleet_page("Fleet", {one, other}, 15'357);
  const size_t fullest = page.find("<bdi>B</bdi>: <bdi>System</bdi>, <bdi>Data</bdi></span>");
  const size_t next = page.find("<bdi>A</bdi>: <bdi>Work</bdi></span>");
  ASSERT_NE(fullest, page.npos);
  ASSERT_NE(next, page.npos);
  EXPECT_LT(fullest, next);
  EXPECT_FALSE(holds(page, "Spare"));
  EXPECT_TRUE(holds(page, "<td class=\"number\">97</td>"));
  EXPECT_TRUE(holds(fleet_page("Fleet", {machine("A")}, 15'357), "<p>None.</p>"));
}

TEST(FleetPage, AKindOfWhichThereIsOneStandsOutAmongMany) {
  std::vector<inv::FleetMachine> machines;
  for (const char* name : {"A", "B", "C", "D", "E", "F", "G", "H", "I"}) {
    machines.push_back(machine(name));
    machines.back().system = "Mac OS X 10.6";
  }
  machines[0].system = "Mac OS X 10.4";
  EXPECT_FALSE(holds(fleet_page("Fleet", machines, 15'357), "no other has"));
  machines.push_back(machine("J"));
  EXPECT_TRUE(holds(fleet_page("Fleet", machines, 15'357),
                    "<li><bdi>A</bdi>: <bdi>no other has Mac OS X 10.4</bdi></li>"));
}

TEST(FleetPage, KindsBeyondADozenAreCountedTogether) {
  std::vector<inv::FleetMachine> machines;
  for (int i = 10; i < 23; ++i) {
    machines.push_back(machine(std::to_string(i)));
    machines.back().model = "Mac" + std::to_string(i);
  }
  const std::string page = fleet_page("Fleet", machines, 15'357);
  EXPECT_TRUE(holds(page, "<bdi>Mac20</bdi></span>"));
  EXPECT_FALSE(holds(page, "<bdi>Mac21</bdi></span>"));
  EXPECT_TRUE(holds(page, "width=\"15\" height=\"8\"/></svg><span>2</span>"));
}

TEST(FleetPage, LinksToTheMachinesOwnPages) {
  inv::FleetMachine one = machine("<A>");
  one.page = "fleet-_A_.html";
  EXPECT_TRUE(
      holds(fleet_page("Fleet", {one}, 15'357), "<a href=\"fleet-_A_.html\"><bdi>&lt;A&gt;</bdi></a>"));
}

TEST(FleetPage, TheLastWholeScanOfAMachineCounts) {
  inv::FleetMachine later = machine("A", "2012-02-18T13:30:45Z");
  inv::FleetMachine damaged = machine("A", "2013-02-18T13:30:45Z");
  damaged.damaged = true;
  const auto last = inv::last_scans({machine("B"), machine("A"), later, damaged});
  ASSERT_EQ(last.size(), 2U);
  EXPECT_EQ(last[0].time, later.time);
  EXPECT_EQ(last[1].name, "B");
}

}  // namespace
