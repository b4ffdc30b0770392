#include "zxml/place.h"

#include <utility>

Tag* Place::reach(bool make_missing) {
  if (passed_) return tag_;
  Tag* tag = nullptr;
  if (start_) {
    tag = reach_from_start(make_missing);
  } else if (name_.empty()) {
    // Only a tag that exists has a first child, so nothing is created on the way to one.
    Tag* parent = parent_->reach(false);
    tag = parent ? parent->child_at(0) : nullptr;
  } else if (Tag* parent = parent_->reach(make_missing)) {
    if (parent->kind_ == Tag::Kind::leaf) parent->kind_ = Tag::Kind::branch;
    tag = find_or_make(*parent, make_missing);
  }
  tag_ = tag;
  passed_ = tag != nullptr;
  return tag;
}

Tag* Place::reach_from_start(bool make_missing) {
  const std::string path_below = name_ + "/";
  std::string_view rest = path_below;
  Tag* tag = start_->walk(&rest, false);
  if (tag || !make_missing) return tag;
  rest = path_below;
  tag = start_->walk(&rest, true);
  made_here_ = tag != nullptr;
  return tag;
}

Tag* Place::find_or_make(Tag& parent, bool make_missing) {
  if (tag_) return tag_;
  const bool surely_new = names_ == Names::unused || (names_ == Names::distinct && parent_->made_here_);
  Tag* tag = surely_new ? nullptr : parent.find_child(name_);
  if (tag || !make_missing) return tag;
  made_here_ = true;
  return &parent.append_leaf(name_);
}

void Place::set_attribute(std::string_view name, Value value, const char* annotation_key,
                          const char* annotation_text) {
  if (Tag* tag = reach(true)) tag->set_own_attribute(name, std::move(value), annotation_key, annotation_text);
}

Attribute* Place::set_distinct_attribute(std::string_view name, Value value, const char* annotation_key,
                                         const char* annotation_text) {
  Tag* tag = reach(true);
  if (!tag) return nullptr;
  return made_here_ ? &tag->add_own_attribute(name, std::move(value), annotation_key, annotation_text)
                    : &tag->set_own_attribute(name, std::move(value), annotation_key, annotation_text);
}

void Place::set_value(Value value) {
  if (start_) {
    start_->set_tag_value(name_.c_str(), std::move(value));
  } else if (Tag* parent = parent_->reach(true)) {
    if (name_.empty()) return parent->set_child_value(name_, std::move(value));
    tag_ = find_or_make(*parent, true);
    tag_->value_ = std::make_unique<Value>(std::move(value));
  }
}

void Place::annotate_attribute(std::string_view name, const char* key, const char* text) {
  Tag* tag = reach(false);
  Attribute* attribute = tag ? tag->find_attribute(name) : nullptr;
  if (attribute) attribute->annotate(key, text);
}

void Place::annotate(const char* key, const char* text) {
  if (start_) return start_->annotate_tag(name_.c_str(), key, text);
  Tag* parent = parent_->reach(false);
  if (!parent) return;
  // As the last segment of a path, an empty name is a name, and not the first child.
  Tag* tag = name_.empty() ? parent->find_child(name_) : find_or_make(*parent, false);
  if (tag) tag->annotate(key, text);
}
