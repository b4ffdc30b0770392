#include "inv/facts/thing.h"

#include <gtest/gtest.h>

#include "inv/facts/paths.h"
#include "inv/maker.h"

namespace {

// An element of a snapshot with these lines.
class Sample {
 public:
  Sample(std::string_view lines, std::string_view path)
      : inventory_(
            maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\n" + std::string(lines) + "-\n"))),
        element(inv::find_matches(*inventory_->snapshot(), path).at(0).element) {}

 private:
  std::unique_ptr<inv::Inventory> inventory_;

 public:
  inv::Element element;
};

constexpr char kDisk[] = "+Storage=\n+Physical-disks=\n*HDD:7=\nmodel= SIM \nsize=1\nserial=A\n-\n-\n";

TEST(Thing, IsTheNearestOneAbove) {
  const Sample part("+Video=\n+Monitors=\n+Monitor:1=\n*h-freq=\nmax=1\n-\n-\n-\n",
                    "/Video/Monitors/Monitor:1/h-freq");
  EXPECT_EQ(inv::thing_of(part.element).name(), "Monitor:1");
  EXPECT_EQ(inv::thing_of(part.element.parent()).name(), "Monitor:1");
  EXPECT_FALSE(inv::thing_of(part.element.parent().parent()));
  EXPECT_FALSE(inv::thing_of({}));
}

TEST(Thing, TheTopOfATreeIsOneByItselfOnly) {
  const Sample sample("+Later=\n*x=\ny=1\n-\n", "/Later");
  EXPECT_EQ(inv::thing_of(sample.element.parent()).name(), "Snapshot");
  EXPECT_FALSE(inv::thing_of(sample.element));
}

TEST(Thing, IsDescribedByWhatItHas) {
  const Sample disk(kDisk, "/Storage/Physical-disks/HDD:7");
  EXPECT_EQ(inv::description_of(disk.element), "SIM 1 GB (A)");
  EXPECT_EQ(inv::name_of(disk.element), "SIM");
  EXPECT_EQ(inv::bracket_of(disk.element), "(A)");
  const Sample bare("+Storage=\n+Physical-disks=\n*HDD:7=\ninterface=SATA\n-\n-\n",
                    "/Storage/Physical-disks/HDD:7");
  EXPECT_EQ(inv::description_of(bare.element), "");
  EXPECT_EQ(inv::name_of(bare.element), "");
  const Sample unknown("+Later=\n*x:1= A \n-\n", "/Later/x:1");
  EXPECT_EQ(inv::description_of(unknown.element), "A");
}

TEST(Thing, ANameIsTheFirstPartThatThereIs) {
  const Sample disk("+Storage=\n+Physical-disks=\n*HDD:7=\nsize=1\nserial=A\n-\n-\n",
                    "/Storage/Physical-disks/HDD:7");
  EXPECT_EQ(inv::name_of(disk.element), "1 GB");
}

TEST(Thing, ASlotIsDescribedWithAndWithoutItsPlace) {
  const Sample slot("+Memory=\n*Memory-slot:3=\nused=1\ncapacity=2048\nmem-type=DDR3\n-\n",
                    "/Memory/Memory-slot:3");
  EXPECT_EQ(inv::description_of(slot.element), "slot 3, 2 GB DDR3");
  EXPECT_EQ(inv::contents_of(slot.element), "2 GB DDR3");
  EXPECT_TRUE(inv::is_there(slot.element));
  const Sample empty("+Memory=\n*Memory-slot:4=\nused=0\n-\n", "/Memory/Memory-slot:4");
  EXPECT_EQ(inv::description_of(empty.element), "slot 4");
  EXPECT_FALSE(inv::is_there(empty.element));
}

TEST(Thing, ValuesAreReadWithTheirUnits) {
  const auto fact = [](std::string_view lines, std::string_view path, std::string_view name) {
    const Sample sample(lines, path);
    return inv::find_fact_below(inv::find_fact(sample.element), name);
  };
  const inv::CatalogueFact* size = fact(kDisk, "/Storage/Physical-disks/HDD:7", "size");
  EXPECT_EQ(inv::readable_value(size, "1000", "1000204886016"), "1 TB");
  EXPECT_EQ(inv::readable_value(size, "8", "8500000000"), "8.5 GB");
  EXPECT_EQ(inv::readable_value(size, "465.76"), "465.76 GB");
  EXPECT_EQ(inv::readable_value(size, ""), "");
  EXPECT_EQ(inv::readable_value(nullptr, "7"), "7");
  const inv::CatalogueFact* physical =
      fact("+Memory=\n*General-info=\nphysical-memory=1\n-\n", "/Memory/General-info", "physical-memory");
  EXPECT_EQ(inv::readable_value(physical, "512"), "512 MB");
  EXPECT_EQ(inv::readable_value(physical, "6656"), "6.5 GB");
  EXPECT_EQ(inv::readable_value(physical, "many"), "many MB");
  const inv::CatalogueFact* used =
      fact("+Memory=\n*Memory-slot:1=\nused=1\n-\n", "/Memory/Memory-slot:1", "used");
  EXPECT_EQ(inv::readable_value(used, "1"), "yes");
  EXPECT_EQ(inv::readable_value(used, "0"), "no");
  EXPECT_EQ(inv::readable_value(used, "2"), "2");
}

TEST(Thing, FactsHaveTheirWords) {
  const Sample disk(kDisk, "/Storage/Physical-disks/HDD:7");
  EXPECT_EQ(inv::word_for(inv::find_fact_below(inv::find_fact(disk.element), "fw-rev"), "fw-rev"),
            "firmware");
  EXPECT_EQ(inv::word_for(inv::find_fact_below(inv::find_fact(disk.element), "smart-status"), "smart-status"),
            "smart status");
  EXPECT_EQ(inv::word_for(nullptr, "a-b-c"), "a b c");
}

}  // namespace
