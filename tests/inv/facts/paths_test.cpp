#include "inv/facts/paths.h"

#include <gtest/gtest.h>

#include "inv/maker.h"

namespace {

std::vector<std::string> found(const inv::Document& document, std::string_view path) {
  std::vector<std::string> paths;
  for (const inv::Match& match : inv::find_matches(document, path)) {
    paths.push_back(match.attribute ? inv::path_below(match.element, match.attribute->name) + "=" +
                                          std::string(match.attribute->value)
                                    : inv::path_of(match.element) + " (tag)");
  }
  return paths;
}

using Paths = std::vector<std::string>;

class PathsTest : public testing::Test {
 protected:
  std::unique_ptr<inv::Inventory> inventory = maker::open(maker::file());
  const inv::Document& snapshot = *inventory->snapshot();
  const inv::Document& asset = *inventory->asset();
};

TEST_F(PathsTest, FindsAttributesAndTags) {
  EXPECT_EQ(found(snapshot, "/Processors/Processor:1/core-count"),
            Paths{"/Processors/Processor:1/core-count=4"});
  EXPECT_EQ(found(snapshot, "/Processors/Processor:1"), Paths{"/Processors/Processor:1 (tag)"});
  EXPECT_EQ(found(snapshot, "/timestamp"), Paths{"/timestamp=20120118153045.000000+120"});
}

TEST_F(PathsTest, StarMatchesWithinASegment) {
  EXPECT_EQ(found(snapshot, "/Software/Soft:*/version"),
            (Paths{"/Software/Soft:1/version=5.1.9", "/Software/Soft:2/version="}));
  EXPECT_EQ(found(snapshot, "/*/*:1/core*"), Paths{"/Processors/Processor:1/core-count=4"});
  EXPECT_EQ(found(snapshot, "/Soft*"), Paths{"/Software (tag)"});
  EXPECT_EQ(found(snapshot, "/*/version"), Paths{});
}

TEST_F(PathsTest, ACompoundFieldIsAttributeAndTag) {
  EXPECT_EQ(found(snapshot, "/Environment/env-var:PATH"),
            (Paths{"/Environment/env-var:PATH=", "/Environment/env-var:PATH (tag)"}));
}

TEST_F(PathsTest, NearMissesFindNothing) {
  for (const char* path : {"", "timestamp", "/Timestamp", "/timestamp/", "//timestamp",
                           "/Processors/Processor:1/", "/Software/Soft:3", "/Software/Soft:1/version/x",
                           "/soft", "Snapshots/timestamp", "AssetInfo/hostname"}) {
    EXPECT_EQ(found(snapshot, path), Paths{}) << path;
  }
}

TEST_F(PathsTest, AnotherTreeIsNamedFirst) {
  EXPECT_EQ(found(asset, "AssetInfo/control/os-name"),
            Paths{"AssetInfo/control/os-name=Mac OS X v10.6 (Snow Leopard)"});
  EXPECT_EQ(found(asset, "/control/os-name"), Paths{});
  EXPECT_EQ(found(snapshot, "Snapshot/hostname"), Paths{"/hostname=OFFICE-MAC"});
}

TEST_F(PathsTest, TheTopElementsHavePathsToo) {
  EXPECT_EQ(found(snapshot, "/"), Paths{"/ (tag)"});
  EXPECT_EQ(found(asset, "AssetInfo"), Paths{"AssetInfo (tag)"});
}

TEST_F(PathsTest, NearestPathIsWhatWasMeant) {
  EXPECT_EQ(inv::nearest_path(snapshot, "/Procesors/Processor:1/core-count"),
            "/Processors/Processor:1/core-count");
  EXPECT_EQ(inv::nearest_path(snapshot, "/processors/processor:1/corecount"),
            "/Processors/Processor:1/core-count");
  EXPECT_EQ(inv::nearest_path(snapshot, "/timestmp"), "/timestamp");
  EXPECT_EQ(inv::nearest_path(asset, "AssetInfo/contrl/os-name"), "AssetInfo/control/os-name");
}

TEST_F(PathsTest, NearestPathIsEmptyIfNothingIsClose) {
  for (const char* path :
       {"", "/", "/timestamp", "/nothing", "/Processors/Processor:2/core-count", "/Software/Soft:3",
        "/timestamp/x", "AssetInfo/hostname", "/Procesors/Processor:1/x"}) {
    EXPECT_EQ(inv::nearest_path(snapshot, path), "") << path;
  }
}

TEST(LooksLikePath, BeginsWithASlashOrATree) {
  for (const char* path : {"/", "/System/Chassis/serial", "/anything", "AssetInfo/control/os-name",
                           "AssetInfo", "Snapshot/hostname", "Asset*/int-name", "*/hostname"}) {
    EXPECT_TRUE(inv::looks_like_path(path)) << path;
  }
  for (const char* text : {"", "-", "monday.inv", "AssetInfo.inv", "scans/AssetInfo", "assetinfo/x"}) {
    EXPECT_FALSE(inv::looks_like_path(text)) << text;
  }
}

TEST(IsKnownPath, IsWhatTheScannerWrites) {
  for (const char* path : {"/", "/System", "/System/Chassis/serial", "/Software/Soft:1/version", "AssetInfo",
                           "AssetInfo/control/os-name", "Snapshot/hostname"}) {
    EXPECT_TRUE(inv::is_known_path(path)) << path;
  }
  for (const char* path : {"", "/tmp", "/System/Library", "/System/", "//System", "monday.inv",
                           "/System/Chassis/serial/x", "/control/os-name", "/*"}) {
    EXPECT_FALSE(inv::is_known_path(path)) << path;
  }
}

}  // namespace
