#include "inv/file/container_writer.h"

#include "zxml/container.h"
#include "zxml/deflate.h"

namespace inv {
namespace {

constexpr char kSource[] = "container_writer";

std::string_view view(const Bytes& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.length()};
}

Bytes encoded(const std::string& text) {
  Bytes bytes = deflate_buffer(text.data(), text.size(), kSource);
  bytes.append(kWholeCompressedEnd.data(), kWholeCompressedEnd.size());
  return bytes;
}

}  // namespace

std::string write_container(std::vector<TreeText> trees) {
  std::vector<Bytes> texts;
  texts.reserve(trees.size());
  std::vector<ContainerSection> sections;
  for (TreeText& tree : trees) {
    texts.push_back(encoded(tree.text));
    std::string().swap(tree.text);
    const bool is_snapshot = tree.kind == Section::Kind::snapshot;
    sections.push_back({is_snapshot ? kSnapshot : kAssetInfo, view(texts.back()), is_snapshot, tree.timestamp,
                        tree.snaptype});
  }
  return std::string(
      view(lay_out_container(sections, HeaderForm::compressed, ByteOrder::most_significant_first, kSource)));
}

}  // namespace inv
