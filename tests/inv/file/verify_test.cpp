#include "inv/file/verify.h"

#include <gtest/gtest.h>

#include "inv/facts/facts.h"
#include "inv/maker.h"
#include "tests/zxml/layouts.h"

namespace {

std::string first_fault(const std::string& file) {
  const inv::Verdict verdict = inv::verify(*maker::open(file));
  return verdict.faults.empty() ? "valid" : inv::describe(verdict.faults[0]);
}

std::string snapshot_text(std::string_view attributes) {
  return "\xEF\xBB\xBF?zxml\n*Snapshot=\n" + std::string(attributes);
}

constexpr char kNeeded[] =
    "timestamp=20120118153045.000000+120\nscan-time=0\nclient-version=1\nscan-subtype=s\nsnaptype=mac:1\n";

TEST(Verify, AcceptsEveryFormTheScannerCanWrite) {
  for (const int byte_order : {0, 1}) {
    for (const Layout layout : kLayouts) {
      EXPECT_EQ(first_fault(maker::file({byte_order, layout})), "valid");
    }
  }
  EXPECT_EQ(first_fault(maker::debug_file("<plist/>")), "valid");
}

TEST(Verify, RequiresTheAttributesByWhichAConsoleFilesASnapshot) {
  EXPECT_EQ(first_fault(maker::file_of_text(snapshot_text(kNeeded))), "valid");
  EXPECT_EQ(first_fault(maker::file_of_text(snapshot_text(std::string(kNeeded).substr(36)))),
            "at byte 0 (line 2, byte 9 of the text): the snapshot has no \"timestamp\"");
  INVfile writer(1);
  auto tree = maker::snapshot();
  tree->set_attribute("/timestamp", text_value("2012-01-18 15:30:45"));
  writer.add_section(std::move(tree), kSnapshot, Layout::whole_compressed);
  EXPECT_EQ(first_fault(maker::bytes_of(writer.build(HeaderForm::compressed))),
            "at byte 0 (line 2, byte 9 of the text): the snapshot's timestamp is not of the form "
            "20120118153045.000000+120");
}

TEST(Verify, WantsTheHeaderToHaveTheSnapshotsTime) {
  std::string other = kNeeded;
  other.replace(other.find("2012"), 4, "2013");
  EXPECT_EQ(first_fault(maker::file_of_text(snapshot_text(other))),
            "at byte 0 (line 2, byte 9 of the text): the snapshot's timestamp differs from the header's");
}

TEST(Verify, WantsTheTopElementToFitTheSection) {
  INVfile writer(1);
  writer.add_section(maker::asset(), kSnapshot, Layout::whole_compressed);
  EXPECT_EQ(first_fault(maker::bytes_of(writer.build(HeaderForm::compressed))),
            "at byte 0 (line 2, byte 9 of the text): the top element is not Snapshot");
}

TEST(Verify, MentionsLinesThatAreNotUtf8WithoutFailing) {
  const inv::Verdict verdict = inv::verify(*maker::open(
      maker::file_of_text(snapshot_text(std::string(kNeeded) + "a=caf\xE9\nb=\xFF\xFE\nc=caf\xC3\xA9\n"))));
  EXPECT_TRUE(verdict.faults.empty());
  EXPECT_EQ(verdict.lines_not_utf8, 2u);
}

TEST(Verify, RejectsEveryTruncation) {
  for (const auto& [layout, header] : {std::pair(Layout::whole_plain, HeaderForm::plain),
                                       std::pair(Layout::whole_compressed, HeaderForm::compressed)}) {
    const std::string file = maker::file({1, layout, header});
    for (size_t length = 0; length < file.size(); ++length) {
      EXPECT_NE(first_fault(file.substr(0, length)), "valid") << length;
    }
  }
}

std::string facts_of(const inv::Inventory& inventory) {
  std::string facts;
  inv::each_fact(inventory, [&](const inv::Fact& fact) {
    facts.append(fact.path).append("=").append(fact.value).append("~").append(fact.base_value).append("\n");
  });
  return facts;
}

TEST(Verify, RejectsEveryFlippedByteThatChangesAValue) {
  const std::string file = maker::file();
  const std::string facts = facts_of(*maker::open(file));
  size_t rejected = 0;
  for (size_t i = 0; i < file.size(); ++i) {
    for (const int flip : {0x01, 0x10, 0x80, 0xFF}) {
      std::string flipped = file;
      flipped[i] = static_cast<char>(flipped[i] ^ flip);
      const auto inventory = maker::open(flipped);
      if (inv::verify(*inventory).faults.empty()) {
        EXPECT_EQ(facts_of(*inventory), facts) << "byte " << i << " xor " << flip;
      } else {
        ++rejected;
      }
    }
  }
  // Only the bits for zlib's compression level make no difference.
  EXPECT_GT(rejected, file.size() * 4 - 16);
}

}  // namespace
