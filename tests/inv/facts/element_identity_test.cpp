#include "inv/facts/element_identity.h"

#include <gtest/gtest.h>

#include "inv/facts/paths.h"
#include "inv/maker.h"

namespace {

std::string identity(std::string_view path, std::string_view lines) {
  const auto inventory =
      maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\n" + std::string(lines) + "-\n"));
  return inv::identity_of(inv::find_matches(*inventory->snapshot(), path).at(0).element);
}

TEST(Identity, IsWhatTheKindIsKnownBy) {
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

TEST(Identity, IsTheNameWhenNothingBetterIsKnown) {
  EXPECT_EQ(identity("/Software/Soft:7", "+Software=\n*Soft:7=Safari\n-\n"), "Soft:7");
  EXPECT_EQ(identity("/Memory/Memory-slot:1", "+Memory=\n*Memory-slot:1=\nserial=1\n-\n"), "Memory-slot:1");
  EXPECT_EQ(identity("/", ""), "Snapshot");
}

TEST(Identity, HoldsOnlyWhereTheKindStands) {
  EXPECT_EQ(identity("/Elsewhere/Soft:7", "+Elsewhere=\n*Soft:7=Safari\nlocation=/x\n-\n"), "Soft:7");
}

}  // namespace
