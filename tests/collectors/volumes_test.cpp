#include "collectors/volumes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/collectors/tree_helpers.h"

namespace {

constexpr char kType[] = "SPSerialATADataType";

// One volume, and the partition that is made from it.
class OneVolume {
 public:
  explicit OneVolume(const Item& keys) : profiler_(profiler_with(kType, {keys})) {}

  const Tag& volume() const { return *first_item(profiler_, kType); }

  // The lines that `write` puts below the partition.
  template <typename Write>
  static std::string written(const Write& write) {
    InventoryTree snapshot = empty_snapshot();
    Place partition(snapshot.root(), "/partition:1");
    partition.set_attribute("made", Value(int64_t{1}));
    write(partition);
    const std::string text = tree_text(snapshot);
    const std::string head = "+Snapshot=\n*partition:1=\nmade=1\n";
    EXPECT_EQ(text.substr(0, head.size()), head);
    return text.substr(head.size(), text.size() - head.size() - 2);
  }

  std::string space() const {
    return written([this](Place& partition) { write_volume_space(partition, volume()); });
  }
  VolumeSpace found() const {
    InventoryTree snapshot = empty_snapshot();
    Place partition(snapshot.root(), "/partition:1");
    return write_volume_space(partition, volume());
  }

 private:
  InventoryTree profiler_;
};

std::string used_share(double size, double free) {
  return OneVolume::written([&](Place& partition) { write_used_share(partition, {size, free, true}); });
}

std::string used_percentage(double size, double free) {
  const std::string lines = used_share(size, free);
  return lines.substr(0, lines.find('\n'));
}

TEST(VolumeSpace, TakesTheBytesWhereTheProfilerCountsThem) {
  const OneVolume volume({{"size", "232,9 GB"},
                          {"size_in_bytes", int64_t{249199591424}},
                          {"free_space", "15 GB"},
                          {"free_space_in_bytes", int64_t{16779472896}}});
  EXPECT_EQ(volume.space(), "size=249.20\n~base-value=249199591424\nfree=16.78\n~base-value=16779472896\n");
  EXPECT_DOUBLE_EQ(volume.found().size, 249.199591424);
  EXPECT_DOUBLE_EQ(volume.found().free, 16.779472896);
  EXPECT_TRUE(volume.found().has_free);
}

TEST(VolumeSpace, WorksTheBytesOutOfTheTextInSinglePrecision) {
  EXPECT_EQ(OneVolume({{"size", "465,76 GB"}, {"free_space", "512 MB"}}).space(),
            "size=500.11\n~base-value=500106002432\nfree=0.54\n~base-value=536870912\n");
}

TEST(VolumeSpace, WritesNothingForAMissingText) {
  const OneVolume volume({{"size_in_bytes", int64_t{1000000000}}, {"free_space_in_bytes", int64_t{5}}});
  EXPECT_EQ(volume.space(), "");
  EXPECT_EQ(volume.found().size, 0);
  EXPECT_FALSE(volume.found().has_free);
}

TEST(VolumeSpace, CountsBytesOfAnotherKindAsZero) {
  EXPECT_EQ(OneVolume({{"size", "465,76 GB"}, {"size_in_bytes", "500107862016"}}).space(),
            "size=0.00\n~base-value=0\n");
}

TEST(VolumeSpace, CountsATextThatIsNotASizeAsZero) {
  EXPECT_EQ(OneVolume({{"size", "huge"}, {"free_space", ""}}).space(),
            "size=0.00\n~base-value=0\nfree=0.00\n~base-value=0\n");
}

TEST(VolumeSpace, WritesNothingForATextOfAnotherKind) {
  const OneVolume volume({{"size", 17}, {"size_in_bytes", int64_t{5}}, {"free_space", 17}});
  EXPECT_EQ(volume.space(), "");
  EXPECT_EQ(volume.found().size, 0);
  EXPECT_FALSE(volume.found().has_free);
}

TEST(VolumeSpace, TakesANegativeByteCountAsTheUnsignedOneItIs) {
  EXPECT_EQ(OneVolume({{"size", "x"}, {"size_in_bytes", int64_t{-1}}}).space(),
            "size=18446744073.71\n~base-value=-1\n");
}

TEST(VolumeSpace, CutsBytesThatFitNoIntegerAtTheLargestOne) {
  EXPECT_NE(OneVolume(Item{{"size", "1e30 TB"}}).space().find("~base-value=9223372036854775807\n"),
            std::string::npos);
}

TEST(UsedShare, AnnotatesThePercentageWithUsedAndSize) {
  EXPECT_EQ(used_share(249.199591424, 16.779472896), "used%=93\n~pos=232.42\n~max=249.20\n~val-units=GB\n");
}

TEST(UsedShare, CutsThePercentageOff) {
  EXPECT_EQ(used_percentage(3, 1), "used%=66");
  EXPECT_EQ(used_percentage(3, 4), "used%=-33");
  EXPECT_EQ(used_percentage(3, 0), "used%=100");
}

TEST(UsedShare, IsNothingOfNoSize) {
  EXPECT_EQ(used_share(0, 5), "used%=0\n~pos=-5.00\n~max=0.00\n~val-units=GB\n");
  EXPECT_EQ(used_percentage(0, 0), "used%=0");
}

TEST(UsedShare, IsNothingWhereThePercentageDoesNotFit) {
  EXPECT_EQ(used_percentage(100, -2147483547), "used%=2147483647");
  EXPECT_EQ(used_percentage(100, -2147483548), "used%=0");
  EXPECT_EQ(used_percentage(100, 2147483748), "used%=-2147483648");
  EXPECT_EQ(used_percentage(100, 2147483749), "used%=0");
  EXPECT_EQ(used_percentage(1e-300, 1e300), "used%=0");
}

TEST(UsedShare, IsZeroWhereThePercentageIsNotANumber) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(used_percentage(infinity, infinity), "used%=0");
  EXPECT_EQ(used_percentage(std::nan(""), 1), "used%=0");
}

}  // namespace
