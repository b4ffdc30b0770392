#include "inv/maker.h"

#include "inv/file/zxml_parser.h"
#include "zxml/deflate.h"

namespace maker {

std::string bytes_of(const Bytes& bytes) {
  return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.length());
}

std::unique_ptr<InventoryTree> snapshot() {
  auto tree = std::make_unique<InventoryTree>(1, "Snapshot");
  const auto text = [&](const char* path, const char* value) {
    tree->set_attribute(path, text_value(value));
  };
  const auto number = [&](const char* path, int64_t value) { tree->set_attribute(path, Value(value)); };
  text("/timestamp", "20120118153045.000000+120");
  number("/scan-time", 12000);
  text("/client-version", "12.01.18.0");
  text("/scan-subtype", "sstService");
  text("/snaptype", "mac:1");
  text("/hostname", "OFFICE-MAC");
  text("/System/Computer-system/model", "iMac11,1");
  text("/System/Chassis/serial", "C02TEST00001");
  tree->set_tag_value("/Processors/Processor:1", text_value("Intel Core i7"));
  number("/Processors/Processor:1/core-count", 4);
  number("/Processors/Processor:1/l2-cache-size", 1024);
  tree->set_tag_value("/Storage/Logical-disks/partition:1", text_value("Macintosh HD"));
  tree->set_attribute("/Storage/Logical-disks/partition:1/size", Value(499.5), "base-value", "499500000000");
  tree->set_tag_value("/Software/Soft:1", text_value("Safari"));
  text("/Software/Soft:1/version", "5.1.9");
  text("/Software/Soft:1/location", "/Applications/Safari.app");
  tree->set_tag_value("/Software/Soft:2", text_value("Caf\xC3\xA9 = tea"));
  tree->set_attribute("/Software/Soft:2/version", text_value(""), "type", "unknown");
  text("/Software/Soft:2/info", "one\ntwo");
  text("/Software/Soft:2/location", "/Applications/Caf\xC3\xA9.app");
  tree->set_attribute("/Environment/env-var:PATH", text_value(""), "complex", "");
  tree->set_tag_value("/Environment/env-var:PATH", text_value("PATH"));
  tree->set_attribute("/Environment/env-var:PATH/value", text_value("/bin:/usr/bin"), "split", ":");
  return tree;
}

std::unique_ptr<InventoryTree> asset() {
  auto tree = std::make_unique<InventoryTree>(1, "AssetInfo");
  tree->set_attribute("/hostname", text_value("OFFICE-MAC"));
  tree->set_attribute("/int-name", text_value("Office Mac"));
  tree->set_attribute("/serial-number", text_value("C02TEST00001"));
  tree->set_attribute("/control/os-name", text_value("Mac OS X v10.6 (Snow Leopard)"));
  return tree;
}

std::string file(const Form& form) {
  INVfile file(form.byte_order);
  auto first = snapshot();
  auto second = asset();
  file.add_section(std::make_unique<InventoryTree>(*first), kSnapshot, form.layout);
  file.add_section(std::make_unique<InventoryTree>(*second), kAssetInfo, form.layout);
  return bytes_of(file.build(form.header));
}

std::string debug_file(std::string_view profiler_output) {
  INVfile file(1);
  file.add_section(asset(), kAssetInfo, Layout::whole_compressed);
  Bytes raw = deflate_buffer(profiler_output.data(), profiler_output.size(), "test");
  const size_t length = raw.length();
  file.add_raw_section(raw.release(), length);
  file.frees_borrowed_data = true;
  return bytes_of(file.build(HeaderForm::compressed));
}

std::string text_of(const InventoryTree& tree) {
  const size_t size = tree.top().text_size() + tree.root().text_size();
  std::string text(size, '\0');
  text.resize(tree.root().write_text(text.data(), 0));
  return text;
}

std::string deflated(std::string_view text) {
  return bytes_of(deflate_buffer(text.data(), text.size(), "test"));
}

std::string trailer(uint64_t header_offset, bool big_endian, char version, char compressed) {
  Bytes bytes;
  bytes.append_number(header_offset, big_endian);
  return bytes_of(bytes) + version + compressed + "INV!";
}

std::string container(std::string_view sections, std::string_view header, bool big_endian) {
  return std::string(sections) + std::string(header) + trailer(sections.size(), big_endian);
}

std::string file_of_text(std::string_view text) {
  const std::string section = deflated(text) + std::string("\0\1ZXML", 6);
  return container(section,
                   "[H]\ncount=1\nsnapshotcount=1\n[0]\noffset=0\nlength=" + std::to_string(section.size()) +
                       "\ntype=snapshot\ntimestamp=20120118153045.000000+120\nsnaptype=mac:1\n");
}

inv::Document document_of_tags(const std::vector<std::string>& tags) {
  std::string text(kTextMark);
  for (const std::string& tag : tags) text.append("+").append(tag).append("=\n");
  for (size_t i = 0; i < tags.size(); ++i) text += "-\n";
  return std::move(*inv::parse_text(std::move(text), nullptr));
}

inv::Element last_tag(const inv::Document& document) {
  return inv::Element(document.top().subtree().end() - 1);
}

std::unique_ptr<inv::Inventory> open(std::string bytes) {
  return inv::open_inventory("test.inv", std::move(bytes), inv::kUsualMaxSize);
}

}  // namespace maker
