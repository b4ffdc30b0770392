// The layout of an .inv file and of the trees in it, in one place for writers and readers. docs/inv-format.md
// describes it byte by byte.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "zxml/bytes.h"

// ---- A tree's section. A whole tree is one text; a split one has a part for the top element ("Root") and
// one for each of its children, followed by an index of the parts.

enum class Layout { whole_plain, whole_compressed, split_plain, split_compressed };

constexpr bool is_compressed(Layout layout) {
  return layout == Layout::whole_compressed || layout == Layout::split_compressed;
}

// The last bytes of each layout: whether it is split, whether it is compressed, and a mark in one of them.
constexpr std::string_view kWholePlainEnd{"\0\0", 2};
constexpr std::string_view kWholeCompressedEnd{"\0\1ZXML", 6};
constexpr std::string_view kSplitPlainEnd{"\1\0", 2};
constexpr std::string_view kSplitCompressedEnd{"\1\1", 2};
// A split layout has its index's offset before them, as a number of this many bytes.
constexpr size_t kIndexOffsetSize = 4;
// The name of a split tree's first part.
constexpr std::string_view kRootPart = "Root";

// ---- The file: sections back to back, a header that lists them, a trailer with the header's offset.

// Written to files: these numbers never change. Sections of other kinds are stored, but get no entry in the
// header.
enum SectionKind : int32_t { kAssetInfo = 0, kSnapshot = 1, kRawData = 2 };

// The names of the kinds in the header; an entry for raw data has an "ID" as well.
constexpr std::string_view kSnapshotType = "snapshot";
constexpr std::string_view kAssetInfoType = "assetinfo";
constexpr std::string_view kRawDataType = "customdata";
constexpr std::string_view kRawDataId = "rawdata";
constexpr std::string_view kSnapType = "mac:1";

// The trailer, from its first byte on: the header's offset, a version, whether the header is compressed, the
// magic.
constexpr size_t kHeaderOffsetSize = 8;
constexpr size_t kVersionPlace = 8;
constexpr size_t kHeaderFormPlace = 9;
constexpr size_t kMagicPlace = 10;
constexpr size_t kTrailerSize = 14;
constexpr unsigned char kTrailerVersion = 3;
constexpr std::string_view kMagic = "INV!";

enum class HeaderForm : unsigned char { plain = 0, compressed = 1 };
enum class ByteOrder { least_significant_first, most_significant_first };

// A finished section; the bytes and texts are borrowed.
struct ContainerSection {
  int32_t kind = kAssetInfo;
  std::string_view data;
  bool counts_as_snapshot = false;  // in the header's count of snapshots
  std::string_view timestamp;       // of a snapshot, for the console to list it without opening the section
  std::string_view snaptype = kSnapType;
};

// The file's bytes, sections in this order. A fault inside the compressor ends the program and names
// `source`; see deflate.h.
Bytes lay_out_container(const std::vector<ContainerSection>& sections, HeaderForm form, ByteOrder order,
                        const char* source);
