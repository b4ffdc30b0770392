// A section's tree for reading: the text itself, and where everything is in it. The tags are in one array in
// the order of the text, so opening a large inventory costs four allocations and walking it is a loop. (The
// scanner's Tag is made for writing by path: a node takes half a dozen allocations, and its texts end at the
// first NUL.)
//
// Looking up something that does not exist yields an empty result, so lookups chain:
//   document.top().child("System").child("Chassis").text("serial")
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace inv {

template <typename Item>
struct Range {
  const Item* first = nullptr;
  const Item* last = nullptr;

  const Item* begin() const { return first; }
  const Item* end() const { return last; }
  bool empty() const { return first == last; }
  size_t size() const { return static_cast<size_t>(last - first); }
  const Item& operator[](size_t place) const { return first[place]; }
};

struct Annotation {
  std::string_view key;
  std::string_view text;
};

// The text of the first annotation with this key; null if there is none.
const std::string_view* find_annotation(const Range<Annotation>& annotations, std::string_view key);

struct Attribute {
  std::string_view name;
  std::string_view value;
  Range<Annotation> annotations;

  bool has(std::string_view annotation_key) const { return find_annotation(annotations, annotation_key); }
  // Empty when there is no such annotation.
  std::string_view annotation(std::string_view key) const;
};

// A tag as it is in the text.
struct Record {
  std::string_view name;
  std::string_view value;
  bool branch = false;           // written with "+" and a closing line
  uint32_t depth = 0;            // 0 for the top element
  uint32_t parent_distance = 0;  // how many records before this one its parent is; 0 for the top element
  uint32_t subtree_size = 1;     // this tag and all below it
  Range<Attribute> attributes;
  Range<Annotation> annotations;
};

class Children;

// A tag, or none: a pointer into its document.
class Element {
 public:
  Element() = default;
  explicit Element(const Record* record) : record_(record) {}

  explicit operator bool() const { return record_ != nullptr; }
  bool operator==(Element other) const { return record_ == other.record_; }
  bool operator!=(Element other) const { return record_ != other.record_; }

  std::string_view name() const { return record().name; }
  std::string_view value() const { return record().value; }
  bool branch() const { return record().branch; }
  uint32_t depth() const { return record().depth; }
  Range<Attribute> attributes() const { return record().attributes; }
  Range<Annotation> annotations() const { return record().annotations; }
  // Empty when there is no such annotation.
  std::string_view annotation(std::string_view key) const;

  // The first attribute of this name, or null; and its value, empty if there is none.
  const Attribute* attribute(std::string_view name) const;
  std::string_view text(std::string_view name) const;

  // Empty for the top element.
  Element parent() const;
  Element first_child() const;
  Element next_sibling() const;
  // The first child of this name, or an empty element.
  Element child(std::string_view name) const;

  // for (Element child : element.children())
  Children children() const;
  // The number of children.
  size_t child_count() const;

  // This tag and all below it, in the order of the text.
  Range<Record> subtree() const;

 private:
  const Record& record() const;

  const Record* record_ = nullptr;
};

// The children of a tag, in order.
class Children {
 public:
  class Iterator {
   public:
    explicit Iterator(Element element) : element_(element) {}
    Element operator*() const { return element_; }
    Iterator& operator++() {
      element_ = element_.next_sibling();
      return *this;
    }
    bool operator!=(const Iterator& other) const { return element_ != other.element_; }

   private:
    Element element_;
  };

  explicit Children(Element parent) : first_(parent.first_child()) {}
  Iterator begin() const { return Iterator(first_); }
  Iterator end() const { return Iterator(Element()); }

 private:
  Element first_;
};

inline Children Element::children() const { return Children(*this); }

// A text of a tree: a name or a value, of an attribute or, if that is null, of the tag itself.
struct TextPlace {
  Element element;
  const Attribute* attribute = nullptr;
  bool is_name = false;
};

// A text and its tree. Its views stay valid when it is moved.
class Document {
 public:
  Element top() const { return Element(records_.data()); }
  const std::string& text() const { return *text_; }
  // The number of lines in the text, not counting the mark.
  size_t line_count() const { return line_count_; }

  // Replaces the names and values that are shown: calls replace(const TextPlace&, std::string_view) for each,
  // which returns what to show, or std::nullopt to leave it. Values come before their names. Annotations
  // stay.
  template <typename Replace>
  void replace_texts(Replace replace);
  // The text in the file in place of this shown text; the same view if it was not replaced.
  std::string_view original(std::string_view shown) const;

 private:
  void show(std::string_view& place, const std::optional<std::string>& text);

  friend class TextParser;

  std::unique_ptr<const std::string> text_;
  std::vector<Record> records_;  // never empty in a document that was parsed
  std::vector<Attribute> attributes_;
  std::vector<Annotation> annotations_;
  size_t line_count_ = 0;
  std::deque<std::string> shown_;                                // replacements
  std::unordered_map<const char*, std::string_view> originals_;  // by the address of the replacement
};

template <typename Replace>
void Document::replace_texts(Replace replace) {
  for (Record& record : records_) {
    const Element element(&record);
    Attribute* const first = attributes_.data() + (record.attributes.first - attributes_.data());
    for (Attribute* attribute = first; attribute != record.attributes.last; ++attribute) {
      show(attribute->value, replace(TextPlace{element, attribute, false}, attribute->value));
      show(attribute->name, replace(TextPlace{element, attribute, true}, attribute->name));
    }
    show(record.value, replace(TextPlace{element, nullptr, false}, record.value));
    show(record.name, replace(TextPlace{element, nullptr, true}, record.name));
  }
}

// The tree as text again: the bytes that it was parsed from.
std::string write_text(const Document& document);

}  // namespace inv
