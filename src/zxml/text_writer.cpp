#include "zxml/text_writer.h"

#include <cstdio>
#include <cstring>

#include "zxml/text_form.h"

namespace {

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
         (tag.kind() == Tag::Kind::branch ? kClosingLine.size() : 0);
}

// Appends pieces of text one after the other.
class Writer {
 public:
  explicit Writer(char* position) : position_(position) {}

  Writer& operator<<(std::string_view text) {
    std::memcpy(position_, text.data(), text.size());
    position_ += text.size();
    return *this;
  }
  Writer& operator<<(char character) { return *this << std::string_view(&character, 1); }
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
    writer << kAnnotationMarker << annotation.key << "=" << annotation.text << "\n";
  }
}

void write_head(Writer& writer, const Tag& tag) {
  const bool branch = tag.kind() == Tag::Kind::branch;
  writer << (branch ? kBranchMarker : kLeafMarker) << tag.name() << "=" << tag.value() << "\n";
  // A trace on standard error for anyone who inspects a file by hand.
  if (branch && !tag.annotations().empty()) std::fprintf(stderr, "tag >>%s<< :\n", tag.name().c_str());
  write_annotations(writer, tag.annotations());
  for (const auto& attribute : tag.attributes()) {
    writer << attribute->name() << "=" << &attribute->value() << "\n";
    write_annotations(writer, attribute->annotations());
  }
}

// One tag and everything below it, without recursion: a tree may be deeper than the stack.
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

// The most bytes that write_text can write: more than text_size where that leaves out the other elements of a
// document, or the annotations of a header.
size_t written_limit(const Tag& tag, bool without_children) {
  const auto element_limit = [&](const Tag& element) {
    return without_children ? own_size(element) : element.text_size();
  };
  if (tag.kind() != Tag::Kind::document) return element_limit(tag);
  size_t limit = kTextMark.size();
  for (const auto& child : tag.children()) limit += element_limit(*child);
  return limit;
}

}  // namespace

// The size counts the children of a leaf, which are not written, and only the first child of a document; the
// forms below depend on both.
size_t Tag::text_size(bool without_children) const {
  if (kind_ == Kind::document)
    return kTextMark.size() + (children_.empty() ? 0 : children_[0]->text_size(without_children));
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
    writer << kTextMark;
    for (const auto& child : children_) write_element(writer, *child, no_close, without_children);
  } else {
    write_element(writer, *this, no_close, without_children);
  }
  return static_cast<size_t>(writer.position() - (buffer + offset));
}

Text written_text(const Tag& tag, bool no_close, bool without_children, size_t* length) {
  Text text(new char[written_limit(tag, without_children) + 1]());
  *length = tag.write_text(text.get(), 0, no_close, without_children);
  return text;
}
