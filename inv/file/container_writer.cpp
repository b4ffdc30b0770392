#include "inv/file/container_writer.h"

#include <algorithm>

#include "zxml/deflate.h"

namespace inv {
namespace {

constexpr char kSource[] = "container_writer";

void append(std::string& file, const Bytes& bytes) {
  file.append(reinterpret_cast<const char*>(bytes.data()), bytes.length());
}

void append_deflated(std::string& file, const std::string& text) {
  append(file, deflate_buffer(text.data(), text.size(), kSource));
}

std::string header_beginning(const std::vector<TreeText>& trees) {
  const auto snapshots = std::count_if(
      trees.begin(), trees.end(), [](const TreeText& tree) { return tree.kind == Section::Kind::snapshot; });
  return "[H]\ncount=" + std::to_string(trees.size()) + "\nsnapshotcount=" + std::to_string(snapshots) + "\n";
}

std::string header_entry(size_t number, size_t offset, size_t length, const TreeText& tree) {
  const std::string entry = "[" + std::to_string(number) + "]\noffset=" + std::to_string(offset) +
                            "\nlength=" + std::to_string(length);
  if (tree.kind == Section::Kind::asset_info) return entry + "\ntype=assetinfo\n";
  return entry + "\ntype=snapshot\ntimestamp=" + tree.timestamp + "\nsnaptype=" + tree.snaptype + "\n";
}

std::string trailer(size_t header_offset) {
  Bytes offset;
  offset.append_number(uint64_t{header_offset}, true);
  std::string bytes;
  append(bytes, offset);
  return bytes + "\3\1INV!";
}

}  // namespace

std::string write_container(const std::vector<TreeText>& trees) {
  std::string file;
  std::string header = header_beginning(trees);
  for (size_t i = 0; i < trees.size(); ++i) {
    const size_t offset = file.size();
    append_deflated(file, trees[i].text);
    file.append("\0\1ZXML", 6);
    header += header_entry(i, offset, file.size() - offset, trees[i]);
  }
  const size_t header_offset = file.size();
  append_deflated(file, header);
  return file + trailer(header_offset);
}

}  // namespace inv
