#include "inv/facts/element_identity.h"

#include <gtest/gtest.h>

#include "inv/facts/paths.h"
#include "inv/maker.h"

namespace {

std::string identity(std::string_view path, std::string_view lines) {
  const auto inventory =
      maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\n" + std::string(lines) + "-\n"));
  inv::Counterparts counterparts(inventory->snapshot_top());
  return inv::identity_of(inv::find_matches(*inventory->snapshot(), path).at(0).element, counterparts);
}

TEST(Identity, IsMadeOfTheIdentifyingAttributes) {
  EXPECT_EQ(
      identity("/Software/Soft:7", "+Software=\n*Soft:7=Safari\nlocation=/Applications/Safari.app\n-\n"),
      "/Applications/Safari.app");
  EXPECT_EQ(identity("/Storage/Physical-disks/HDD:1",
                     "+Storage=\n+Physical-disks=\n*HDD:1=\nmodel=X\nserial=S1\n-\n-\n"),
            "S1");
  EXPECT_EQ(
      identity("/Network/Adapters/net-adapter:2",
               "+Network=\n+Adapters=\n*net-adapter:2=AirPort\nbsd-device-name=en1\ntype=AirPort\n-\n-\n"),
      "en1 AirPort");
  EXPECT_EQ(identity("/User-accounts/usr-acc:jane", "+User-accounts=\n*usr-acc:jane=jane\nid=501\n-\n"),
            "501");
  EXPECT_EQ(identity("/Storage/Logical-disks/partition:1",
                     "+Storage=\n+Logical-disks=\n*partition:1=Macintosh HD\nmount-point=/\n-\n-\n"),
            "/ Macintosh HD");
}

TEST(Identity, IsMadeOfTheAttributesOfItsKind) {
  struct {
    std::string parent, name, attributes, identity;
  } const rows[] = {
      {"Storage/Physical-disks", "HDD:1=a", "model=m\nserial=s\n", "s"},
      {"Storage/Physical-disks", "Removable:1=Stick", "serial=s\nmodel=m\n", "s Stick"},
      {"Storage/Physical-disks", "CD:1=a", "model=m\nserial=s\n", "m"},
      {"Video/Monitors", "Monitor:1=a", "id=i\nserial-digital=7\nserial=s\n", "i 7 s"},
      {"Video/Video-devices", "Video-adapter:1=Card", "ram=256\n", "Card"},
      {"Peripherals/USB", "Device:1=a", "product-id=p\nvendor-id=v\nserial-number=s\n", "v p s"},
      {"Peripherals/Printers", "Printer:1=Laser", "uri=usb://x\nppd=p\n", "usb://x Laser"},
      {"System/PowerManagement", "Profile:1=AC Power", "wake-on-lan=1\n", "AC Power"},
      {"Security/Firewall", "Services=a", "x=1\n", "Services"},
  };
  for (const auto& row : rows) {
    const size_t slash = row.parent.find('/');
    const std::string lines = "+" + row.parent.substr(0, slash) + "=\n+" + row.parent.substr(slash + 1) +
                              "=\n*" + row.name + "\n" + row.attributes + "-\n-\n";
    const std::string path = "/" + row.parent + "/" + row.name.substr(0, row.name.find('='));
    EXPECT_EQ(identity(path, lines), row.identity) << path;
  }
  EXPECT_EQ(identity("/Processes/process:3", "+Processes=\n*process:3=launchd\npid=1\nppid=0\n-\n"), "1");
  EXPECT_EQ(identity("/Security/Firewall/Services/service:1",
                     "+Security=\n+Firewall=\n+Services=\n*service:1=ssh\nstatus=1\n-\n-\n-\n"),
            "ssh");
  EXPECT_EQ(identity("/Security/Firewall/Apps/app:1",
                     "+Security=\n+Firewall=\n+Apps=\n*app:1=Chat\nstatus=1\n-\n-\n-\n"),
            "Chat");
}

TEST(Identity, OfDetailsIsThatOfTheirElement) {
  EXPECT_EQ(identity("/Software-details/Soft:7",
                     "+Software=\n*Soft:6=Chess\nlocation=/c\n*Soft:7=Safari\nlocation=/s\n-\n"
                     "+Software-details=\n*Soft:7=\nsource=apple\n-\n"),
            "/s");
  EXPECT_EQ(identity("/Network/Details/adapter:2",
                     "+Network=\n+Adapters=\n*net-adapter:2=AirPort\nbsd-device-name=en1\n-\n"
                     "+Details=\n*adapter:2=\nlink-speed=none\n-\n-\n"),
            "en1");
  EXPECT_EQ(
      identity("/Storage/Details/HDD:1",
               "+Storage=\n+Physical-disks=\n*HDD:1=\nserial=S1\n-\n+Details=\n*HDD:1=\nmedium=ssd\n-\n-\n"),
      "S1");
  EXPECT_EQ(identity("/Software-details/Soft:7", "+Software-details=\n*Soft:7=\nsource=apple\n-\n"),
            "Soft:7");
}

TEST(Identity, IsTheNameWhenNothingBetterIsKnown) {
  EXPECT_EQ(identity("/Software/Soft:7", "+Software=\n*Soft:7=Safari\n-\n"), "Soft:7");
  EXPECT_EQ(identity("/Memory/Memory-slot:1", "+Memory=\n*Memory-slot:1=\nserial=1\n-\n"), "Memory-slot:1");
  EXPECT_EQ(identity("/", ""), "Snapshot");
}

TEST(Identity, HoldsOnlyWhereTheKindOccurs) {
  EXPECT_EQ(identity("/Elsewhere/Soft:7", "+Elsewhere=\n*Soft:7=Safari\nlocation=/x\n-\n"), "Soft:7");
}

}  // namespace
