#include "zxml/zXML.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <utility>

#include "zxml/deflate.h"

namespace {

constexpr char kSource[] = "zXML";
constexpr char kHeader[] = "\xEF\xBB\xBF?zxml\n";
constexpr size_t kHeaderSize = sizeof kHeader - 1;
constexpr char kClosingLine[] = "-\n";
constexpr size_t kClosingLineSize = sizeof kClosingLine - 1;

// The text of a value: a view of the value's own text, or of `number`, which receives a formatted number (309
// digits at most, and sign, point, decimals).
std::string_view value_text(const Value* value, char (&number)[320]) {
  if (!value) return "";
  int length = 0;
  switch (value->kind()) {
    case Value::Kind::boolean:
      return value->boolean() ? "true" : "false";
    case Value::Kind::int64:
      length = std::snprintf(number, sizeof number, "%lld", static_cast<long long>(value->int64()));
      break;
    case Value::Kind::real:
      length = std::snprintf(number, sizeof number, "%.2f", value->real());
      break;
    case Value::Kind::text:
      return value->text();
    case Value::Kind::none:
      return "";
  }
  return {number, static_cast<size_t>(length)};
}

size_t value_size(const Value* value) {
  char number[320];
  return value_text(value, number).size();
}

size_t annotations_size(const std::vector<Annotation>& annotations) {
  size_t size = 0;
  for (const Annotation& annotation : annotations) size += annotation.key.size() + annotation.text.size() + 3;
  return size;
}

// A tag without what children_size counts: its own line and its attributes.
size_t head_size(const Tag& tag) {
  size_t size = tag.name().size() + 3 + value_size(tag.value());
  for (const auto& attribute : tag.attributes()) {
    size += attribute->name().size() + 2 + value_size(&attribute->value()) +
            annotations_size(attribute->annotations());
  }
  return size;
}

size_t own_size(const Tag& tag) {
  return head_size(tag) + annotations_size(tag.annotations()) +
         (tag.kind() == Tag::Kind::branch ? kClosingLineSize : 0);
}

// Appends pieces of text behind each other.
class Writer {
 public:
  explicit Writer(char* position) : position_(position) {}

  Writer& operator<<(std::string_view text) {
    std::memcpy(position_, text.data(), text.size());
    position_ += text.size();
    return *this;
  }
  Writer& operator<<(const Value* value) {
    char number[320];
    return *this << value_text(value, number);
  }
  const char* position() const { return position_; }

 private:
  char* position_;
};

void write_annotations(Writer& writer, const std::vector<Annotation>& annotations) {
  for (const Annotation& annotation : annotations) {
    writer << "~" << annotation.key << "=" << annotation.text << "\n";
  }
}

void write_head(Writer& writer, const Tag& tag) {
  const bool branch = tag.kind() == Tag::Kind::branch;
  writer << (branch ? "+" : "*") << tag.name() << "=" << tag.value() << "\n";
  // A trace on standard error for whoever looks into a file by hand.
  if (branch && !tag.annotations().empty()) std::fprintf(stderr, "tag >>%s<< :\n", tag.name().c_str());
  write_annotations(writer, tag.annotations());
  for (const auto& attribute : tag.attributes()) {
    writer << attribute->name() << "=" << &attribute->value() << "\n";
    write_annotations(writer, attribute->annotations());
  }
}

// One tag and what is below it, without recursion: a tree may be deeper than the stack.
void write_element(Writer& writer, const Tag& element, bool no_close, bool without_children) {
  struct Open {
    const Tag* tag;
    size_t next_child;
  };
  std::vector<Open> open;
  const auto enter = [&](const Tag& tag) {
    write_head(writer, tag);
    if (tag.kind() == Tag::Kind::branch) open.push_back({&tag, 0});
  };
  enter(element);
  while (!open.empty()) {
    Open& top = open.back();
    const bool is_element = open.size() == 1;
    const bool children_left =
        top.next_child < top.tag->children().size() && !(is_element && without_children);
    if (children_left) {
      enter(*top.tag->child_at(top.next_child++));
      continue;
    }
    if (!(is_element && no_close)) writer << kClosingLine;
    open.pop_back();
  }
}

// The most bytes that write_text writes: more than text_size where that leaves out the other elements of a
// document, or the annotations of a header.
size_t written_limit(const Tag& tag, bool without_children) {
  const auto element_limit = [&](const Tag& element) {
    return without_children ? own_size(element) : element.text_size();
  };
  if (tag.kind() != Tag::Kind::document) return element_limit(tag);
  size_t limit = kHeaderSize;
  for (const auto& child : tag.children()) limit += element_limit(*child);
  return limit;
}

// The text that write_text writes, and its length. Zeros stand behind it: a text that is shorter than its
// text_size, because a leaf hides children, is handed on in that size.
Text written_text(const Tag& tag, bool no_close, bool without_children, size_t* length) {
  Text text(new char[written_limit(tag, without_children) + 1]());
  *length = tag.write_text(text.get(), 0, no_close, without_children);
  return text;
}

}  // namespace

// The size counts the children of a leaf, which are not written, and only the first child of a document; the
// forms below depend on both.
size_t Tag::text_size(bool without_children) const {
  if (kind_ == Kind::document)
    return kHeaderSize + (children_.empty() ? 0 : children_[0]->text_size(without_children));
  if (without_children) return head_size(*this);
  size_t size = 0;
  std::vector<const Tag*> pending = {this};
  while (!pending.empty()) {
    const Tag* tag = pending.back();
    pending.pop_back();
    size += own_size(*tag);
    for (const auto& child : tag->children_) pending.push_back(child.get());
  }
  return size;
}

size_t Tag::write_text(char* buffer, size_t offset, bool no_close, bool without_children) const {
  Writer writer(buffer + offset);
  if (kind_ == Kind::document) {
    writer << std::string_view(kHeader, kHeaderSize);
    for (const auto& child : children_) write_element(writer, *child, no_close, without_children);
  } else {
    write_element(writer, *this, no_close, without_children);
  }
  return static_cast<size_t>(writer.position() - (buffer + offset));
}

Bytes Tag::compressed_text() const {
  size_t length = 0;
  const Text text = written_text(*this, false, false, &length);
  return deflate_buffer(text.get(), text_size(), kSource);
}

InventoryTree::InventoryTree(int32_t byte_order_flag, const char* top_name)
    : byte_order_flag_(byte_order_flag), root_("", Tag::Kind::document) {
  root_.append_leaf(top_name);
}

InventoryTree::InventoryTree(const InventoryTree& source)
    : byte_order_flag_(source.byte_order_flag_), root_(source.root_) {}

void InventoryTree::set_attribute(const char* path, Value value, const char* annotation_key,
                                  const char* annotation_text) {
  root_.set_attribute(path, std::move(value), annotation_key, annotation_text);
}

void InventoryTree::set_tag_value(const char* path, Value value) {
  root_.set_tag_value(path, std::move(value));
}

void InventoryTree::annotate_attribute(const char* path, const char* key, const char* text) {
  root_.annotate_attribute(path, key, text);
}

Bytes InventoryTree::serialize(bool sectioned, bool compressed) {
  if (!sectioned) return compressed ? whole_compressed() : whole_plain();
  return compressed ? split_compressed() : split_plain();
}

void InventoryTree::save(const char* path, bool sectioned, bool compressed) {
  std::FILE* file = std::fopen(path, "w");
  if (!file) return;
  const Bytes bytes = serialize(sectioned, compressed);
  std::fwrite(bytes.data(), 1, bytes.length(), file);
  std::fflush(file);
  std::fclose(file);
}

Bytes InventoryTree::whole_compressed() const {
  size_t length = 0;
  const Text text = written_text(root_, false, false, &length);
  Bytes bytes = deflate_buffer(text.get(), length, kSource);
  bytes.append("\0\1ZXML", 6);
  return bytes;
}

Bytes InventoryTree::whole_plain() const {
  size_t length = 0;
  const Text text = written_text(root_, false, false, &length);
  const size_t counted = root_.text_size();
  Bytes bytes(counted + 2);
  bytes.append(text.get(), std::min(length, counted));
  while (bytes.length() < counted + 2) bytes.append_byte(0);
  return bytes;
}

void InventoryTree::add_section_record(const std::string& name, size_t length) {
  const uint32_t offset = sections_.empty() ? 0 : sections_.back().offset + sections_.back().length;
  sections_.push_back({offset, static_cast<uint32_t>(length), name});
}

std::string InventoryTree::section_index() const {
  std::string index;
  for (const Section& section : sections_) {
    index += "[" + section.name + "]\noffset=" + std::to_string(section.offset) +
             "\nlength=" + std::to_string(section.length) + "\n";
  }
  return index;
}

void InventoryTree::append_split_trailer(Bytes& bytes, size_t index_offset, bool compressed) const {
  bytes.append_number(static_cast<uint32_t>(index_offset), byte_order_flag_ != 0);
  bytes.append_byte(1);
  bytes.append_byte(compressed ? 1 : 0);
}

Bytes InventoryTree::split_plain() {
  sections_.clear();
  add_section_record("Root", root_.text_size(true));
  for (const auto& child : top().children()) add_section_record(child->name(), child->text_size());
  size_t length = 0;
  const Text text = written_text(root_, true, false, &length);
  const std::string index = section_index();
  Bytes bytes(length + index.size() + 6);
  bytes.append(text.get(), length);
  bytes.append(index.data(), index.size());
  append_split_trailer(bytes, length, false);
  return bytes;
}

Bytes InventoryTree::split_compressed() {
  sections_.clear();
  Bytes bytes;
  const auto add_section = [&](const std::string& name, const Bytes& section) {
    add_section_record(name, section.length());
    bytes.append(section.data(), section.length());
  };
  size_t length = 0;
  const Text header = written_text(root_, true, true, &length);
  add_section("Root", deflate_buffer(header.get(), root_.text_size(true), kSource));
  for (const auto& child : top().children()) add_section(child->name(), child->compressed_text());
  const size_t index_offset = bytes.length();
  const std::string index = section_index();
  const Bytes compressed_index = deflate_buffer(index.data(), index.size(), kSource);
  bytes.append(compressed_index.data(), compressed_index.length());
  append_split_trailer(bytes, index_offset, true);
  return bytes;
}

void copy_processes(InventoryTree& destination, const InventoryTree& source) {
  const Tag* processes = source.top().find_child("Processes");
  if (processes) destination.top().add_child(std::make_unique<Tag>(*processes));
}
