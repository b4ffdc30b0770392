// The inventory tree's node and what belongs to it. Tags are addressed by slash paths relative to a tag: in
// "a/b/name" every segment but the last names a child tag, the last one an attribute or, for some operations,
// a tag. A leading "/", or an empty segment between two slashes, steps into the first child of the tag
// reached. A repeated element carries its index in its name ("Processor:2"); lookup is by exact name, first
// match in insertion order. A path that would step into the first child of a tag that has none makes and sets
// nothing; as with any walk, tags that it passed through on the way to something deeper become branches.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "zxml/bytes.h"
#include "zxml/value.h"

// Metadata about a value, written as a line "~key=text" after it.
struct Annotation {
  std::string key;
  std::string text;
};

class Attribute {
 public:
  explicit Attribute(std::string_view name) : name_(name) {}

  const std::string& name() const { return name_; }
  Value& value() { return value_; }
  const Value& value() const { return value_; }
  const std::vector<Annotation>& annotations() const { return annotations_; }

  // Appends an annotation, even when one with this key exists. A null text counts as empty.
  void annotate(const char* key, const char* text);
  // The first annotation with this key, or null.
  const Annotation* find_annotation(const char* key) const;

 private:
  std::vector<Annotation> annotations_;
  Value value_;
  std::string name_;
};

class Tag {
 public:
  // document: the root of a tree, without a name. A leaf is written without its children, a branch with them.
  enum class Kind : int32_t { document = 0, leaf = 1, branch = 2 };

  explicit Tag(std::string_view name, Kind kind = Kind::leaf) : kind_(kind), name_(name) {}
  // A deep copy. Copying and destroying are safe at any depth.
  Tag(const Tag& source);
  Tag& operator=(const Tag&) = delete;
  ~Tag();

  Kind kind() const { return kind_; }
  const std::string& name() const { return name_; }
  // Null until the tag is given a value.
  Value* value() { return value_.get(); }
  const Value* value() const { return value_.get(); }
  const std::vector<std::unique_ptr<Tag>>& children() const { return children_; }
  const std::vector<std::unique_ptr<Attribute>>& attributes() const { return attributes_; }
  const std::vector<Annotation>& annotations() const { return annotations_; }

  // Lookups among the direct children or attributes; null when there is no match.
  Tag* find_child(std::string_view name) const;
  Tag* child_at(size_t index) const;
  Attribute* find_attribute(std::string_view name) const;
  Attribute* attribute_at(size_t index) const;
  // The smallest n from 1 on for which no child is named `prefix` followed by n.
  int next_free_index(std::string_view prefix) const;

  // Appends a child and makes this tag a branch.
  void add_child(std::unique_ptr<Tag> child);

  // Appends an annotation to this tag, even when one with this key exists.
  void annotate(const char* key, const char* text);

  // Sets the attribute at the path, creating missing tags along the way. The annotation (when its key is not
  // null) is attached only when the attribute is created; an existing one keeps what it has.
  void set_attribute(const char* path, Value value, const char* annotation_key = nullptr,
                     const char* annotation_text = nullptr);
  // Gives the tag at the path a value, creating it and missing tags along the way. It does not make the tag
  // above it a branch: an element shows in the text form once something has been set below it.
  void set_tag_value(const char* path, Value value);
  // Append an annotation to an existing attribute, or an existing tag; nothing is created, and nothing
  // happens when there is none.
  void annotate_attribute(const char* path, const char* key, const char* text);
  void annotate_tag(const char* path, const char* key, const char* text);

  // The exact number of bytes that write_text writes for a whole tag: see zXML.h.
  size_t text_size(bool without_children = false) const;
  size_t write_text(char* buffer, size_t offset, bool no_close = false, bool without_children = false) const;
  // The compressed form of the tag's whole text; empty when the compressor cannot be initialised.
  Bytes compressed_text() const;

 private:
  friend class Place;
  friend class InventoryTree;

  Tag& append_leaf(std::string_view name);
  // Appends an attribute without looking whether there is one of this name.
  Attribute& add_own_attribute(std::string_view name, Value value, const char* annotation_key,
                               const char* annotation_text);
  // What a write does at the tag that has the named attribute or child.
  Attribute& set_own_attribute(std::string_view name, Value value, const char* annotation_key,
                               const char* annotation_text);
  void set_child_value(std::string_view name, Value value);
  // Passes through this tag to the named child, as a path's inner segment does; null when there is no such
  // child.
  Tag* pass_to_child(std::string_view name);
  Tag* walk(std::string_view* path, bool make_missing);
  Tag* copy_own_parts(const Tag& source);

  Kind kind_;
  std::vector<Annotation> annotations_;
  std::vector<std::unique_ptr<Tag>> children_;
  std::vector<std::unique_ptr<Attribute>> attributes_;
  std::string name_;
  std::unique_ptr<Value> value_;
};
