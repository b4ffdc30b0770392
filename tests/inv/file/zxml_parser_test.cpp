#include "inv/file/zxml_parser.h"

#include <gtest/gtest.h>

#include "inv/maker.h"

namespace {

using inv::Document;
using inv::Element;
using inv::Fault;

std::string mark(std::string_view lines) { return std::string(kTextMark).append(lines); }

Document parsed(std::string text) {
  Fault fault;
  std::optional<Document> document = inv::parse_text(std::move(text), &fault);
  EXPECT_TRUE(document) << inv::describe(fault);
  return document ? std::move(*document) : Document();
}

// The fault's line, position and message in one text, or "parsed".
std::string fault_of(std::string text) {
  Fault fault;
  if (inv::parse_text(std::move(text), &fault)) return "parsed";
  return std::to_string(fault.line) + ":" + std::to_string(fault.text_offset) + " " + fault.message;
}

TEST(ZxmlParser, ReadsTagsAttributesAndAnnotationsInTheirPlaces) {
  const Document document =
      parsed(mark("+Snapshot=\n~own=note\ntimestamp=now\n~kind=date\n~more=\n*OS=ten\nname=Lion\n+Disks=\n*"
                  "HDD:1=\n-\n-\n"));
  const Element top = document.top();
  EXPECT_EQ(top.name(), "Snapshot");
  EXPECT_TRUE(top.branch());
  EXPECT_EQ(top.annotation("own"), "note");
  ASSERT_EQ(top.attributes().size(), 1u);
  EXPECT_EQ(top.text("timestamp"), "now");
  EXPECT_EQ(top.attribute("timestamp")->annotations.size(), 2u);
  EXPECT_EQ(top.attribute("timestamp")->annotation("kind"), "date");
  const Element os = top.child("OS");
  EXPECT_FALSE(os.branch());
  EXPECT_EQ(os.value(), "ten");
  EXPECT_EQ(os.text("name"), "Lion");
  EXPECT_EQ(os.next_sibling().name(), "Disks");
  EXPECT_EQ(os.next_sibling().first_child().name(), "HDD:1");
  EXPECT_EQ(os.next_sibling().first_child().depth(), 2u);
}

TEST(ZxmlParser, KeepsEqualSignsCarriageReturnsAndMarkersInsideValues) {
  const Document document = parsed(mark("*Snapshot=a=b\nx=~y=\rz\ny=+\nz=-\n"));
  EXPECT_EQ(document.top().value(), "a=b");
  EXPECT_EQ(document.top().text("x"), "~y=\rz");
  EXPECT_EQ(document.top().text("y"), "+");
  EXPECT_EQ(document.top().text("z"), "-");
}

TEST(ZxmlParser, KeepsBytesThatAreNotUtf8) {
  EXPECT_EQ(parsed(mark("*Snapshot=caf\xE9\n")).top().value(), "caf\xE9");
}

TEST(ZxmlParser, ReadsBranchWithoutChildrenAndEmptyNames) {
  const Document document = parsed(mark("+Snapshot=\n=nameless\n+=\n-\n-\n"));
  EXPECT_EQ(document.top().text(""), "nameless");
  EXPECT_TRUE(document.top().first_child().branch());
  EXPECT_EQ(document.top().first_child().first_child(), Element());
}

TEST(ZxmlParser, ViewsStayRightWhenAShortDocumentMoves) {
  Document first = parsed(mark("*A=\n"));
  const Document second = std::move(first);
  EXPECT_EQ(second.top().name(), "A");
}

TEST(ZxmlParser, NamesLineByteAndReasonOfEveryBreachOfTheGrammar) {
  EXPECT_EQ(fault_of(""), "1:0 the text does not begin with its mark");
  EXPECT_EQ(fault_of("?zxml\n*Snapshot=\n"), "1:0 the text does not begin with its mark");
  EXPECT_EQ(fault_of(mark("")), "2:9 the text has no element");
  EXPECT_EQ(fault_of(mark("*Snapshot=")), "2:9 the last line has no line end");
  EXPECT_EQ(fault_of(mark("*Snapshot=\nname\n")), "3:20 a line has no \"=\"");
  EXPECT_EQ(fault_of(mark("*Snapshot=\n\n")), "3:20 a line has no \"=\"");
  EXPECT_EQ(fault_of(mark("*Snapshot=\na=b") + '\0' + "\n"), "3:20 a line contains a NUL byte");
  EXPECT_EQ(fault_of(mark("name=value\n")), "2:9 an attribute is outside every tag");
  EXPECT_EQ(fault_of(mark("~key=text\n")), "2:9 an annotation is outside every tag");
  EXPECT_EQ(fault_of(mark("+S=\n+A=\n-\nlate=1\n-\n")), "5:19 an attribute is outside every tag");
  EXPECT_EQ(fault_of(mark("+S=\n+A=\n-\n~late=1\n-\n")), "5:19 an annotation is outside every tag");
  EXPECT_EQ(fault_of(mark("+S=\n")), "3:13 the text ends before its elements are closed");
  EXPECT_EQ(fault_of(mark("*S=\n-\n")), "3:13 a closing line has no element to close");
  EXPECT_EQ(fault_of(mark("*S=\n*T=\n")), "3:13 there is a second top element");
  EXPECT_EQ(fault_of(mark("+S=\n-\n+T=\n-\n")), "4:15 there is a second top element");
}

TEST(ZxmlParser, RefusesDeeperNestingThanAnyInventoryHas) {
  const auto nested = [](size_t depth) {
    std::string lines;
    for (size_t i = 0; i <= depth; ++i) lines += "+a=\n";
    for (size_t i = 0; i <= depth; ++i) lines += "-\n";
    return mark(lines);
  };
  EXPECT_EQ(fault_of(nested(512)), "parsed");
  EXPECT_EQ(fault_of(nested(513)), "515:2061 elements are nested more than 512 levels deep");
  EXPECT_EQ(fault_of(nested(200'000)), "515:2061 elements are nested more than 512 levels deep");
}

TEST(ZxmlParser, RefusesMoreLinesThanMemoryShouldPayFor) {
  inv::Fault fault;
  EXPECT_TRUE(inv::parse_text(mark("+a=\n*b=\n-\n"), &fault, 3));
  EXPECT_FALSE(inv::parse_text(mark("+a=\n*b=\n-\n"), &fault, 2));
  EXPECT_EQ(fault.message, "the text has more than 2 lines; a larger --max-size allows more");
}

TEST(ZxmlParser, AFileMayHaveMoreLinesWhenItMayBeLarger) {
  EXPECT_EQ(inv::most_lines(inv::kUsualMaxSize), inv::kUsualLines);
  EXPECT_EQ(inv::most_lines(2 * inv::kUsualMaxSize), 2 * inv::kUsualLines);
  EXPECT_EQ(inv::most_lines(1), 65'536U);
  EXPECT_EQ(inv::most_lines(65'537 * 128), 65'537U);
  EXPECT_EQ(inv::most_lines(uint64_t{1} << 40), 2'147'483'647U);
}

TEST(ZxmlParser, RefusesALineThatIsNoFact) {
  const auto line = [](size_t size) { return mark("*a=\nb=" + std::string(size - 2, 'x') + "\n"); };
  EXPECT_EQ(fault_of(line(4 << 20)), "parsed");
  EXPECT_EQ(fault_of(line((4 << 20) + 1)), "3:13 a line is longer than 4194304 bytes");
}

// Commands write whole paths: a short text of long names and many elements would fill disks and memory.
TEST(ZxmlParser, RefusesTextsWhosePathsTogetherAreHuge) {
  const std::string name(1'000'000, 'n');
  const auto with_attributes = [&](size_t count) {
    std::string lines = "+S=\n+" + name + "=\n*leaf=\n";
    for (size_t i = 0; i < count; ++i) lines += "a=\n";
    return mark(lines + "-\n-\n");
  };
  EXPECT_EQ(fault_of(with_attributes(200)), "parsed");
  EXPECT_EQ(fault_of(with_attributes(2000)), "271:1000821 its paths take more than 268435456 bytes");
  std::string siblings = "+S=\n+" + name + "=\n";
  for (size_t i = 0; i < 2000; ++i) siblings += "*a=\n";
  EXPECT_EQ(fault_of(mark(siblings + "-\n-\n")), "271:1001084 its paths take more than 268435456 bytes");
  // What was closed does not count for what follows.
  std::string after = "+S=\n+" + name + "=\n-\n";
  for (size_t i = 0; i < 2000; ++i) after += "*a=\n";
  EXPECT_EQ(fault_of(mark(after + "-\n")), "parsed");
}

TEST(ZxmlParser, EveryTruncationOfATextIsRefused) {
  const std::string text = maker::text_of(*maker::snapshot());
  for (size_t length = 0; length < text.size(); ++length) {
    EXPECT_NE(fault_of(text.substr(0, length)), "parsed") << length;
  }
  EXPECT_EQ(fault_of(text), "parsed");
}

}  // namespace
