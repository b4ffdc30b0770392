#include "zxml/container.h"

#include <algorithm>
#include <string>

#include "zxml/deflate.h"

namespace {

// A line "key=value".
std::string line(std::string_view key, std::string_view value) {
  return std::string(key).append("=").append(value).append("\n");
}

// What the header says about a section besides its place; nothing for a kind that the console does not know.
std::string description(const ContainerSection& section) {
  switch (section.kind) {
    case kSnapshot:
      return line("type", kSnapshotType) + line("timestamp", section.timestamp) +
             line("snaptype", section.snaptype);
    case kAssetInfo:
      return line("type", kAssetInfoType);
    case kRawData:
      return line("type", kRawDataType) + line("ID", kRawDataId);
    default:
      return "";
  }
}

// A section of an unknown kind takes up its place and its number, but has no lines.
std::string header_text(const std::vector<ContainerSection>& sections) {
  const auto snapshots = std::count_if(sections.begin(), sections.end(), [](const ContainerSection& section) {
    return section.counts_as_snapshot;
  });
  std::string text = "[H]\n" + line("count", std::to_string(sections.size())) +
                     line("snapshotcount", std::to_string(snapshots));
  size_t offset = 0;
  for (size_t i = 0; i < sections.size(); ++i) {
    const ContainerSection& section = sections[i];
    const std::string described = description(section);
    if (!described.empty()) {
      text += "[" + std::to_string(i) + "]\n" + line("offset", std::to_string(offset)) +
              line("length", std::to_string(section.data.size())) + described;
    }
    offset += section.data.size();
  }
  return text;
}

Bytes stored_header(const std::string& text, HeaderForm form, const char* source) {
  if (form == HeaderForm::compressed) return deflate_buffer(text.data(), text.size(), source);
  Bytes header;
  header.append(text.data(), text.size());
  return header;
}

}  // namespace

Bytes lay_out_container(const std::vector<ContainerSection>& sections, HeaderForm form, ByteOrder order,
                        const char* source) {
  const Bytes header = stored_header(header_text(sections), form, source);
  uint64_t header_offset = 0;
  for (const ContainerSection& section : sections) header_offset += section.data.size();

  Bytes file(static_cast<size_t>(header_offset) + header.length() + kTrailerSize);
  for (const ContainerSection& section : sections) file.append(section.data.data(), section.data.size());
  file.append(header.data(), header.length());
  file.append_number(header_offset, order == ByteOrder::most_significant_first);
  file.append_byte(kTrailerVersion);
  file.append_byte(static_cast<unsigned char>(form));
  file.append(kMagic.data(), kMagic.size());
  return file;
}
