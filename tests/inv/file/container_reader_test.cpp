#include "inv/file/container_reader.h"

#include <gtest/gtest.h>

#include "inv/maker.h"

namespace {

using inv::Container;
using inv::Faults;
using inv::Section;

std::optional<Container> read(const std::string& file, Faults& faults,
                              uint64_t max_size = inv::kUsualMaxSize) {
  return inv::read_container(file, max_size, faults);
}

// The faults' sentences, one per line.
std::string faults_of(const std::string& file, uint64_t max_size = inv::kUsualMaxSize) {
  Faults faults;
  read(file, faults, max_size);
  std::string sentences;
  for (const inv::Fault& fault : faults) sentences += inv::describe(fault) + "\n";
  return sentences;
}

std::string header(const std::string& entries, int count = 1) {
  return "[H]\ncount=" + std::to_string(count) + "\nsnapshotcount=0\n" + entries;
}

TEST(ContainerReader, ReadsBothByteOrdersAndBothHeaderForms) {
  for (const int byte_order : {0, 1}) {
    for (const HeaderForm header : {HeaderForm::plain, HeaderForm::compressed}) {
      const std::string file = maker::file({byte_order, Layout::whole_compressed, header});
      Faults faults;
      const auto container = read(file, faults);
      ASSERT_TRUE(container);
      EXPECT_EQ(container->big_endian, byte_order == 1);
      EXPECT_EQ(container->header_compressed, header == HeaderForm::compressed);
      EXPECT_EQ(container->header_offset + container->header_size + 14, file.size());
      EXPECT_EQ(container->header_text.substr(0, 12), "[H]\ncount=2\n");
      EXPECT_TRUE(faults.empty());
    }
  }
}

TEST(ContainerReader, ListsSectionsAsTheHeaderDescribesThem) {
  Faults faults;
  const std::string file = maker::file();
  const auto container = read(file, faults);
  ASSERT_TRUE(container);
  ASSERT_EQ(container->sections.size(), 2u);
  const Section& first = container->sections[0];
  EXPECT_EQ(first.kind, Section::Kind::snapshot);
  EXPECT_EQ(first.timestamp, "20120118153045.000000+120");
  EXPECT_EQ(first.snaptype, "mac:1");
  EXPECT_EQ(first.data.data(), file.data());
  const Section& second = container->sections[1];
  EXPECT_EQ(second.kind, Section::Kind::asset_info);
  EXPECT_EQ(second.offset, first.length);
  EXPECT_EQ(second.data, std::string_view(file).substr(first.length, second.length));
  EXPECT_EQ(container->count, 2u);
  EXPECT_EQ(container->snapshot_count, 1u);
}

TEST(ContainerReader, ReadsTheRawDataOfADebugRun) {
  Faults faults;
  const std::string file = maker::debug_file("<plist/>");
  const auto container = read(file, faults);
  ASSERT_TRUE(container);
  EXPECT_EQ(container->sections[1].kind, Section::Kind::raw_data);
  EXPECT_EQ(container->sections[1].type, "customdata rawdata");
}

TEST(ContainerReader, ShowsBytesOfKindsWithoutAnEntryAsUnlisted) {
  INVfile writer(1);
  writer.add_section(maker::snapshot(), 7, Layout::whole_compressed);
  writer.add_section(maker::asset(), kAssetInfo, Layout::whole_compressed);
  writer.add_section(maker::asset(), 9, Layout::whole_compressed);
  const std::string file = maker::bytes_of(writer.build(HeaderForm::compressed));
  Faults faults;
  const auto container = read(file, faults);
  ASSERT_TRUE(container);
  EXPECT_TRUE(faults.empty());
  ASSERT_EQ(container->sections.size(), 3u);
  EXPECT_EQ(container->sections[0].kind, Section::Kind::unlisted);
  EXPECT_EQ(container->sections[0].number, 0u);
  EXPECT_EQ(container->sections[0].offset, 0u);
  EXPECT_EQ(container->sections[0].length, container->sections[1].offset);
  EXPECT_EQ(container->sections[2].kind, Section::Kind::unlisted);
  EXPECT_EQ(container->sections[2].number, 2u);
}

TEST(ContainerReader, KeepsEntriesOfUnknownTypeAndIgnoresUnknownKeys) {
  Faults faults;
  const std::string file =
      maker::container("abc", header("[0]\noffset=0\nlength=3\ntype=picture\ncolour=red\n"));
  const auto container = read(file, faults);
  ASSERT_TRUE(container);
  EXPECT_EQ(container->sections[0].kind, Section::Kind::other);
  EXPECT_EQ(container->sections[0].type, "picture");
  EXPECT_EQ(container->sections[0].data, "abc");
}

TEST(ContainerReader, ReadsSnapshotWithoutTimestamp) {
  Faults faults;
  const auto with_empty = read(
      maker::container("abc", header("[0]\noffset=0\nlength=3\ntype=snapshot\ntimestamp=\nsnaptype=mac:1\n")),
      faults);
  const auto without =
      read(maker::container("abc", header("[0]\noffset=0\nlength=3\ntype=snapshot\n")), faults);
  EXPECT_EQ(with_empty->sections[0].timestamp, "");
  EXPECT_EQ(without->sections[0].timestamp, "");
  EXPECT_TRUE(faults.empty());
}

TEST(ContainerReader, SaysWhereATrailerIsWrong) {
  EXPECT_EQ(faults_of(""), "at byte 0: the file is shorter than a trailer\n");
  EXPECT_EQ(faults_of("INV!"), "at byte 4: the file is shorter than a trailer\n");
  const std::string body = header("", 0);
  EXPECT_EQ(faults_of(body + maker::trailer(0, true)), "");
  EXPECT_EQ(faults_of(body + maker::trailer(0, true) + "\n"),
            "at byte " + std::to_string(body.size() + 11) + ": the magic \"INV!\" is missing\n");
  EXPECT_EQ(faults_of(body + maker::trailer(0, true, kTrailerVersion - 1)),
            "at byte " + std::to_string(body.size() + 8) + ": the trailer's version is not 3\n");
  EXPECT_EQ(faults_of(body + maker::trailer(0, true, kTrailerVersion, 2)),
            "at byte " + std::to_string(body.size() + 9) +
                ": the trailer marks the header neither plain nor compressed\n");
  EXPECT_EQ(faults_of(body + maker::trailer(body.size() + 1, true)),
            "at byte " + std::to_string(body.size()) + ": the header's offset is past the end of the file\n");
  EXPECT_EQ(faults_of(body + maker::trailer(UINT64_MAX, true)),
            "at byte " + std::to_string(body.size()) + ": the header's offset is past the end of the file\n");
}

TEST(ContainerReader, RefusesEveryOtherMagic) {
  const std::string file = maker::container("", header("", 0));
  for (size_t back = 1; back <= 4; ++back) {
    std::string damaged = file;
    damaged[damaged.size() - back] = '?';
    EXPECT_EQ(faults_of(damaged),
              "at byte " + std::to_string(file.size() - 4) + ": the magic \"INV!\" is missing\n");
  }
}

TEST(ContainerReader, SaysWhereAHeaderIsWrong) {
  const auto fault = [](const std::string& text) { return faults_of(maker::container("abc", text)); };
  EXPECT_EQ(fault(""), "at byte 3: the header does not begin with [H]\n");
  EXPECT_EQ(fault("count=1\n"), "at byte 3: the header does not begin with [H]\n");
  EXPECT_EQ(fault("[H]\n"), "at byte 3: the header has no count\n");
  EXPECT_EQ(fault("[H]\ncount=1"), "at byte 7: the header's last line has no line end\n");
  EXPECT_EQ(fault("[H]\ncount\n"), "at byte 7: a header line has no \"=\"\n");
  EXPECT_EQ(fault("[H]\ncount=x\n"), "at byte 7: header: \"x\" is not a number\n");
  EXPECT_EQ(fault("[H]\ncount=-1\n"), "at byte 7: header: \"-1\" is not a number\n");
  EXPECT_EQ(fault("[H]\ncount=99999999999999999999\n"),
            "at byte 7: header: \"99999999999999999999\" is not a number\n");
  EXPECT_EQ(fault("[H]\ncount=1\n[x]\n"), "at byte 15: header: \"x\" is not a number\n");
  EXPECT_EQ(fault("[H]\ncount=1\n[0]\noffset=0\n"),
            "at byte 19: a header entry has no offset or no length\n");
  EXPECT_EQ(fault("[H]\ncount=1\n[1]\noffset=0\nlength=3\n"),
            "at byte 28: the header has more entries than its count says\n");
  EXPECT_EQ(fault("[H]\ncount=2\n[0]\noffset=0\nlength=3\n[0]\noffset=3\nlength=0\n"),
            "at byte 37: the header's entries are out of order\n");
}

TEST(ContainerReader, RefusesDamagedCompressedHeader) {
  std::string file = maker::file();
  const size_t checksum = file.size() - 14 - 1;
  file[checksum] = static_cast<char>(file[checksum] ^ 1);
  EXPECT_NE(
      faults_of(file).find("the header cannot be read: the zlib stream is damaged (incorrect data check)"),
      std::string::npos);
}

TEST(ContainerReader, RefusesBytesAfterTheStreamOfAHeader) {
  const std::string stream = maker::deflated(header("", 0));
  EXPECT_EQ(faults_of(stream + maker::trailer(0, true, kTrailerVersion, 1)), "");
  EXPECT_EQ(faults_of(stream + "x" + maker::trailer(0, true, kTrailerVersion, 1)),
            "at byte " + std::to_string(stream.size()) +
                ": the header cannot be read: there are bytes after its zlib stream\n");
}

TEST(ContainerReader, RefusesAPlainHeaderLargerThanAnyIs) {
  const std::string start = header("", 0) + "x=";
  const std::string largest = start + std::string((1 << 20) - start.size() - 1, 'x') + "\n";
  EXPECT_EQ(faults_of(maker::container("", largest)), "");
  EXPECT_EQ(faults_of(maker::container("", "[H]\nx=" + largest)), "at byte 0: the header is too large\n");
}

TEST(ContainerReader, RefusesHeaderThatInflatesWithoutEnd) {
  const std::string bomb = maker::deflated(std::string(8 << 20, ' '));
  EXPECT_NE(faults_of(bomb + maker::trailer(0, true, kTrailerVersion, 1))
                .find("inflates to more than 1048576 bytes"),
            std::string::npos);
}

TEST(ContainerReader, KeepsOtherSectionsWhenOneDoesNotFit) {
  const std::string file =
      maker::container("abcdef", header("[0]\noffset=0\nlength=3\ntype=snapshot\n[1]\noffset=3\nlength="
                                        "9223372036854775807\ntype=assetinfo\n",
                                        2));
  Faults faults;
  const auto container = read(file, faults);
  ASSERT_TRUE(container);
  EXPECT_EQ(container->sections[0].data, "abc");
  EXPECT_TRUE(container->sections[1].data.empty());
  EXPECT_EQ(inv::describe(faults[0]), "at byte 6: section 1 does not fit before the header");
}

TEST(ContainerReader, RefusesASectionThatReachesIntoTheHeader) {
  EXPECT_EQ(faults_of(maker::container("abcdef", header("[0]\noffset=3\nlength=4\ntype=x\n"))),
            "at byte 6: section 0 does not fit before the header\n");
}

TEST(ContainerReader, TakesASectionOfJustTheLimit) {
  EXPECT_EQ(faults_of(maker::container("abcdef", header("[0]\noffset=0\nlength=6\ntype=x\n")), 6), "");
}

TEST(ContainerReader, RefusesSectionDeclaredLargerThanTheLimit) {
  EXPECT_EQ(faults_of(maker::container("abcdef", header("[0]\noffset=0\nlength=6\ntype=snapshot\n")), 5),
            "at byte 0: section 0 is larger than 5 bytes\n");
}

TEST(ContainerReader, ReportsGapsAndOverlapsThatNoSkippedNumberExplains) {
  EXPECT_EQ(faults_of(maker::container("abcdef", header("[0]\noffset=0\nlength=3\ntype=x\n"))),
            "at byte 3: bytes are outside every section\n");
  EXPECT_EQ(faults_of(maker::container(
                "abcdef", header("[0]\noffset=0\nlength=4\ntype=x\n[1]\noffset=3\nlength=3\ntype=x\n", 2))),
            "at byte 3: sections overlap\n");
}

}  // namespace
