#include "inv/export/prepared_scan.h"

#include <gtest/gtest.h>

#include <set>

#include "inv/maker.h"

namespace {

using Row = inv::PreparedScan::Row;

std::string text_of(const Row& row) {
  std::string text;
  for (const std::string_view cell : {row.section, row.path, row.element, row.name, row.kind, row.index,
                                      row.value, row.unit, row.base_value}) {
    text.append(cell).append("|");
  }
  return text + (row.is_number ? "number" : "text");
}

std::vector<std::string> texts_of(const inv::PreparedScan& scan) {
  std::vector<std::string> texts;
  scan.each_row([&](const Row& row) {
    texts.push_back(text_of(row));
    return true;
  });
  return texts;
}

TEST(PreparedScan, HasEveryFactInOrderWithoutTheInventory) {
  auto inventory = maker::open(maker::file());
  std::vector<std::string> facts;
  inv::each_fact(*inventory, [&](const inv::Fact& fact) {
    facts.push_back(text_of({{},
                             fact.path,
                             fact.element,
                             fact.section,
                             fact.name,
                             fact.kind,
                             fact.index,
                             fact.value,
                             fact.unit,
                             fact.base_value,
                             inv::is_number(fact.value)}));
  });
  const inv::PreparedScan scan(*inventory);
  inventory.reset();
  EXPECT_EQ(texts_of(scan), facts);
  EXPECT_EQ(scan.facts(), facts.size());
  EXPECT_EQ(scan.scan().machine, "C02TEST00001");
}

TEST(PreparedScan, TextsAreValidWhateverTheFileHolds) {
  const inv::PreparedScan scan(
      *maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n*Snapshot=\nhost\xE9name=caf\xE9!\nnext=1\n")));
  EXPECT_EQ(texts_of(scan),
            (std::vector<std::string>{
                "snapshot|/host\uFFFDname|/|host\uFFFDname|/host\uFFFDname||caf\uFFFD!|||text",
                "snapshot|/next|/|next|/next||1|||number"}));
}

TEST(PreparedScan, AnElementAndItsAttributeOfOnePathHaveKeysOfTheirOwn) {
  const inv::PreparedScan scan(
      *maker::open(maker::file_of_text("\xEF\xBB\xBF?zxml\n+Snapshot=\n*a=one\nb=two\n*c=\na/b=three\n-\n")));
  std::set<std::string> keys;
  scan.each_row([&](const Row& row) { return keys.insert(std::string(row.path_key)).second; });
  EXPECT_EQ(keys.size(), scan.facts());
}

TEST(PreparedScan, ItsRowsEndWhenToldTo) {
  const inv::PreparedScan scan(*maker::open(maker::file()));
  int seen = 0;
  EXPECT_FALSE(scan.each_row([&](const Row&) { return ++seen < 3; }));
  EXPECT_EQ(seen, 3);
}

}  // namespace
