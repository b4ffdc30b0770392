#include "zxml/tag.h"

#include <algorithm>
#include <cstdlib>

namespace {

// Numbered names ("item41", "item42") differ at their end, so that is compared first.
bool same_name(const std::string& name, std::string_view wanted) {
  return name.size() == wanted.size() && (wanted.empty() || name.back() == wanted.back()) && name == wanted;
}

template <typename Named>
Named* find_named(const std::vector<std::unique_ptr<Named>>& list, std::string_view name) {
  for (const auto& element : list) {
    if (same_name(element->name(), name)) return element.get();
  }
  return nullptr;
}

template <typename Element>
Element* element_at(const std::vector<std::unique_ptr<Element>>& list, size_t index) {
  return index < list.size() ? list[index].get() : nullptr;
}

// The number in a name of the form `prefix` followed by a plain decimal; 0 for any other name, and for
// numbers above `most`.
size_t index_in_name(std::string_view name, std::string_view prefix, size_t most) {
  if (name.substr(0, prefix.size()) != prefix) return 0;
  name.remove_prefix(prefix.size());
  if (name.empty() || name.front() == '0') return 0;
  size_t index = 0;
  for (const char digit : name) {
    if (digit < '0' || digit > '9') return 0;
    index = index * 10 + static_cast<size_t>(digit - '0');
    if (index > most) return 0;
  }
  return index;
}

// True when the walk along the rest of a path would meet an empty segment before its last one.
bool steps_into_first_child(std::string_view path) {
  return path.substr(0, 1) == "/" || path.find("//") != std::string_view::npos;
}

}  // namespace

void Attribute::annotate(const char* key, const char* text) {
  annotations_.push_back({key ? key : "", text ? text : ""});
}

const Annotation* Attribute::find_annotation(const char* key) const {
  for (const Annotation& annotation : annotations_) {
    if (annotation.key == key) return &annotation;
  }
  return nullptr;
}

Tag* Tag::copy_own_parts(const Tag& source) {
  annotations_ = source.annotations_;
  attributes_.reserve(source.attributes_.size());
  for (const auto& attribute : source.attributes_)
    attributes_.push_back(std::make_unique<Attribute>(*attribute));
  if (source.value_) value_ = std::make_unique<Value>(*source.value_);
  return this;
}

Tag::Tag(const Tag& source) : kind_(source.kind_), name_(source.name_) {
  std::vector<std::pair<const Tag*, Tag*>> pending;
  pending.emplace_back(&source, copy_own_parts(source));
  while (!pending.empty()) {
    const auto [original, copy] = pending.back();
    pending.pop_back();
    copy->children_.reserve(original->children_.size());
    for (const auto& child : original->children_) {
      copy->children_.push_back(std::make_unique<Tag>(child->name_, child->kind_));
      pending.emplace_back(child.get(), copy->children_.back()->copy_own_parts(*child));
    }
  }
}

Tag::~Tag() {
  // Taken apart level by level, since a chain of destructors would exhaust the stack on a deep tree.
  std::vector<std::unique_ptr<Tag>> pending = std::move(children_);
  while (!pending.empty()) {
    const std::unique_ptr<Tag> tag = std::move(pending.back());
    pending.pop_back();
    for (auto& child : tag->children_) pending.push_back(std::move(child));
    tag->children_.clear();
  }
}

Tag* Tag::find_child(std::string_view name) const { return find_named(children_, name); }
Tag* Tag::child_at(size_t index) const { return element_at(children_, index); }
Attribute* Tag::find_attribute(std::string_view name) const { return find_named(attributes_, name); }
Attribute* Tag::attribute_at(size_t index) const { return element_at(attributes_, index); }

int Tag::next_free_index(std::string_view prefix) const {
  // Among n children at most n numbers are taken, so one of the first n + 1 is free.
  std::vector<bool> taken(children_.size() + 2, false);
  for (const auto& child : children_) taken[index_in_name(child->name_, prefix, children_.size())] = true;
  return static_cast<int>(std::find(taken.begin() + 1, taken.end(), false) - taken.begin());
}

void Tag::add_child(std::unique_ptr<Tag> child) {
  children_.push_back(std::move(child));
  kind_ = Kind::branch;
}

void Tag::annotate(const char* key, const char* text) {
  annotations_.push_back({key ? key : "", text ? text : ""});
}

Tag& Tag::append_leaf(std::string_view name) {
  children_.push_back(std::make_unique<Tag>(name));
  return *children_.back();
}

Attribute& Tag::add_own_attribute(std::string_view name, Value value, const char* annotation_key,
                                  const char* annotation_text) {
  attributes_.push_back(std::make_unique<Attribute>(name));
  Attribute& attribute = *attributes_.back();
  if (annotation_key) attribute.annotate(annotation_key, annotation_text);
  attribute.value() = std::move(value);
  return attribute;
}

Tag* Tag::pass_to_child(std::string_view name) {
  if (kind_ == Kind::leaf) kind_ = Kind::branch;
  return find_child(name);
}

// Follows the path's inner segments and leaves the last segment in it. Null if the walk ends early.
Tag* Tag::walk(std::string_view* path, bool make_missing) {
  Tag* tag = this;
  bool below_made_tag = false;
  for (;;) {
    const size_t slash = path->find('/');
    if (slash == std::string_view::npos) return tag;
    const std::string_view segment = path->substr(0, slash);
    path->remove_prefix(slash + 1);
    Tag* next = segment.empty() ? tag->child_at(0) : tag->pass_to_child(segment);
    if (!next) {
      if (segment.empty() || !make_missing) return nullptr;
      // A tag created here has no child to step into: such a path creates nothing at all.
      if (!below_made_tag && steps_into_first_child(*path)) return nullptr;
      below_made_tag = true;
      next = &tag->append_leaf(segment);
    }
    tag = next;
  }
}

Attribute& Tag::set_own_attribute(std::string_view name, Value value, const char* annotation_key,
                                  const char* annotation_text) {
  Attribute* attribute = find_attribute(name);
  if (!attribute) return add_own_attribute(name, std::move(value), annotation_key, annotation_text);
  attribute->value() = std::move(value);
  return *attribute;
}

void Tag::set_child_value(std::string_view name, Value value) {
  Tag* child = find_child(name);
  if (!child) child = &append_leaf(name);
  child->value_ = std::make_unique<Value>(std::move(value));
}

void Tag::set_attribute(const char* path, Value value, const char* annotation_key,
                        const char* annotation_text) {
  std::string_view rest = path;
  Tag* tag = walk(&rest, true);
  if (tag) tag->set_own_attribute(rest, std::move(value), annotation_key, annotation_text);
}

void Tag::set_tag_value(const char* path, Value value) {
  std::string_view rest = path;
  Tag* tag = walk(&rest, true);
  if (tag) tag->set_child_value(rest, std::move(value));
}

void Tag::annotate_attribute(const char* path, const char* key, const char* text) {
  std::string_view rest = path;
  Tag* tag = walk(&rest, false);
  Attribute* attribute = tag ? tag->find_attribute(rest) : nullptr;
  if (attribute) attribute->annotate(key, text);
}

void Tag::annotate_tag(const char* path, const char* key, const char* text) {
  std::string_view rest = path;
  Tag* tag = walk(&rest, false);
  Tag* child = tag ? tag->find_child(rest) : nullptr;
  if (child) child->annotate(key, text);
}
