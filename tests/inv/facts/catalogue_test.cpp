#include "inv/facts/catalogue.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "inv/file/zxml_parser.h"
#include "inv/maker.h"

namespace {

using inv::CatalogueFact;
using Tags = std::vector<std::string>;

const CatalogueFact* fact_of(const Tags& tags) {
  const inv::Document document = maker::document_of_tags(tags);
  return inv::find_fact(maker::last_tag(document));
}

const CatalogueFact* fact_of(const Tags& tags, std::string_view attribute) {
  return inv::find_fact_below(fact_of(tags), attribute);
}

TEST(Catalogue, KnowsTheTreesByTheirTopElements) {
  ASSERT_TRUE(fact_of({"Snapshot"}));
  ASSERT_TRUE(fact_of({"AssetInfo"}));
  EXPECT_NE(fact_of({"Snapshot"}), fact_of({"AssetInfo"}));
  EXPECT_FALSE(fact_of({"Macintosh"}));
}

TEST(Catalogue, KnowsElementsAndAttributesByTheirPaths) {
  EXPECT_EQ(fact_of({"Snapshot", "Processors", "Processor:2"}, "core-count")->name, "core-count");
  EXPECT_EQ(fact_of({"Snapshot", "Processors", "Processor:2"}, "l2-cache-size")->unit, "KB");
  EXPECT_EQ(fact_of({"AssetInfo", "control"}, "cpu-speed")->unit, "MHz");
  EXPECT_FALSE(fact_of({"Processors", "Processor:2"}, "core-count"));
  EXPECT_FALSE(fact_of({"AssetInfo", "Processors"}));
  EXPECT_FALSE(fact_of({"Snapshot", "Processors"}, "core-count"));
}

TEST(Catalogue, TakesNamesUpToTheirColon) {
  const CatalogueFact* variable = fact_of({"Snapshot", "Environment", "env-var:A:B"});
  ASSERT_TRUE(variable);
  EXPECT_EQ(variable->name, "env-var");
  EXPECT_EQ(variable, fact_of({"Snapshot", "Environment"}, "env-var:HOME"));
  EXPECT_FALSE(fact_of({"Snapshot", "Environment", "env-va:A"}));
  EXPECT_FALSE(fact_of({"Snapshot", "Environment", ":A"}));
}

TEST(Catalogue, FindsNothingBelowWhatItDoesNotKnow) {
  EXPECT_FALSE(inv::find_fact({}));
  EXPECT_FALSE(inv::find_fact_below(nullptr, "serial"));
  EXPECT_FALSE(fact_of({"Snapshot", "Later", "HDD:1"}));
}

TEST(Catalogue, KnowsTheDeepestElementAndNoneBelowIt) {
  Tags tags = {"Snapshot", "Video", "Monitors", "Monitor:1", "Video-Modes", "v-mode:3"};
  EXPECT_EQ(inv::kCatalogueDepth, tags.size() - 1);
  EXPECT_EQ(fact_of(tags, "freq")->unit, "Hz");
  tags.push_back("freq");
  EXPECT_FALSE(fact_of(tags));
  while (tags.size() < inv::kDeepestElement) tags.push_back("x");
  EXPECT_FALSE(fact_of(tags));
}

TEST(Catalogue, EverythingBelowAPassingElementIsPassing) {
  EXPECT_TRUE(fact_of({"Snapshot"}, "timestamp")->passing);
  EXPECT_TRUE(fact_of({"Snapshot", "Processes"})->passing);
  EXPECT_TRUE(fact_of({"Snapshot", "Processes", "process:1"}, "pid")->passing);
  EXPECT_TRUE(fact_of({"AssetInfo"}, "last-scan")->passing);
  EXPECT_TRUE(fact_of({"AssetInfo"}, "scan-attempt")->passing);
  EXPECT_FALSE(fact_of({"Snapshot"})->passing);
  EXPECT_FALSE(fact_of({"Snapshot", "OS", "os:1"})->passing);
  EXPECT_FALSE(fact_of({"Snapshot"}, "hostname")->passing);
}

TEST(Catalogue, NamesTheIdentifyingAttributes) {
  const auto known_by = [](const Tags& tags) {
    const auto range = fact_of(tags)->known_by;
    return std::vector<std::string_view>(range.begin(), range.end());
  };
  EXPECT_EQ(known_by({"Snapshot", "Peripherals", "Printers", "Printer:1"}),
            (std::vector<std::string_view>{"uri", ""}));
  EXPECT_EQ(known_by({"Snapshot", "Video", "Monitors", "Monitor:1"}),
            (std::vector<std::string_view>{"id", "serial-digital", "serial"}));
  EXPECT_TRUE(known_by({"Snapshot", "Memory", "Memory-slot:1"}).empty());
}

// What is below a fact is found by binary search.
void expect_sorted(const CatalogueFact& fact) {
  for (size_t i = 1; i < fact.below.size(); ++i) {
    const std::string_view before = fact.below.begin()[i - 1].name;
    const std::string_view name = fact.below.begin()[i].name;
    EXPECT_LT(std::pair(before.size(), before), std::pair(name.size(), name));
  }
  for (const CatalogueFact& below : fact.below) expect_sorted(below);
}

TEST(Catalogue, LiesSorted) { expect_sorted(inv::kCatalogue[0]); }

TEST(Catalogue, RecognisesIdentifiersByNameAlone) {
  EXPECT_EQ(inv::identifier_by_name("serial"), inv::IdentifierKind::serial);
  EXPECT_EQ(inv::identifier_by_name("disk:3"), inv::IdentifierKind::text);
  EXPECT_EQ(inv::identifier_by_name("usr-acc:jane"), inv::IdentifierKind::account);
  EXPECT_FALSE(inv::identifier_by_name("model"));
  EXPECT_FALSE(inv::identifier_by_name("hdir"));
  EXPECT_FALSE(inv::identifier_by_name(""));
}

}  // namespace
