#include "inv/file/document.h"

#include "inv/file/zxml_parser.h"

namespace inv {

const std::string_view* find_annotation(const Range<Annotation>& annotations, std::string_view key) {
  for (const Annotation& annotation : annotations) {
    if (annotation.key == key) return &annotation.text;
  }
  return nullptr;
}

std::string_view Attribute::annotation(std::string_view key) const {
  const std::string_view* text = find_annotation(annotations, key);
  return text ? *text : std::string_view();
}

const Record& Element::record() const {
  static const Record none;
  return record_ ? *record_ : none;
}

std::string_view Element::annotation(std::string_view key) const {
  const std::string_view* text = find_annotation(annotations(), key);
  return text ? *text : std::string_view();
}

const Attribute* Element::attribute(std::string_view name) const {
  for (const Attribute& attribute : attributes()) {
    if (attribute.name == name) return &attribute;
  }
  return nullptr;
}

std::string_view Element::text(std::string_view name) const {
  const Attribute* found = attribute(name);
  return found ? found->value : std::string_view();
}

void Document::show(std::string_view& place, const std::optional<std::string>& text) {
  if (!text) return;
  shown_.push_back(*text);
  originals_.emplace(shown_.back().data(), place);
  place = shown_.back();
}

std::string_view Document::original(std::string_view shown) const {
  const auto found = originals_.find(shown.data());
  return found == originals_.end() ? shown : found->second;
}

Element Element::parent() const {
  const uint32_t distance = record().parent_distance;
  return distance > 0 ? Element(record_ - distance) : Element();
}

Element Element::first_child() const { return record().subtree_size > 1 ? Element(record_ + 1) : Element(); }

Element Element::next_sibling() const {
  const Element above = parent();
  if (!above) return Element();
  const Record* next = record_ + record_->subtree_size;
  return next < above.record_ + above.record_->subtree_size ? Element(next) : Element();
}

Element Element::child(std::string_view name) const {
  for (const Element child : children()) {
    if (child.name() == name) return child;
  }
  return Element();
}

size_t Element::child_count() const {
  size_t count = 0;
  for (Element child = first_child(); child; child = child.next_sibling()) ++count;
  return count;
}

Range<Record> Element::subtree() const {
  return record_ ? Range<Record>{record_, record_ + record_->subtree_size} : Range<Record>{};
}

namespace {

void append_line(std::string& text, std::string_view marker, std::string_view name, std::string_view value) {
  text.append(marker).append(name).append("=").append(value).append("\n");
}

void append_annotations(std::string& text, const Range<Annotation>& annotations) {
  for (const Annotation& annotation : annotations) append_line(text, "~", annotation.key, annotation.text);
}

}  // namespace

std::string write_text(const Document& document) {
  std::string text(kTextMark);
  uint32_t open = 0;  // branches without their closing line
  const auto close_to = [&](uint32_t depth) {
    for (; open > depth; --open) text += "-\n";
  };
  for (const Record& record : document.top().subtree()) {
    close_to(record.depth);
    append_line(text, record.branch ? "+" : "*", record.name, record.value);
    append_annotations(text, record.annotations);
    for (const Attribute& attribute : record.attributes) {
      append_line(text, "", attribute.name, attribute.value);
      append_annotations(text, attribute.annotations);
    }
    if (record.branch) ++open;
  }
  close_to(0);
  return text;
}

}  // namespace inv
