// A place in a tree that several writes share, so that the path to it is walked once.
#pragma once

#include <string>
#include <string_view>

#include "zxml/tag.h"

// Writing through a Place gives exactly the tree that the same writes with full paths would give: the tags
// along the way appear with the first write, and become branches once something below them is reached.
class Place {
 public:
  // Whether the parent may hold a child of this name already. `distinct` promises that no writer gives two
  // children of the parent the same name; a parent made by its own Place then needs no search. `unused`
  // promises that the parent has no child of this name yet, and so never needs one.
  enum class Names { may_repeat, distinct, unused };

  // The tag at a path from `start`, which must outlive the Place.
  Place(Tag& start, std::string path) : start_(&start), name_(std::move(path)) {}
  // The child of `parent` that a path segment leads to: the child of this name, or the first child for an
  // empty name. The name holds no "/"; the parent must outlive the Place.
  Place(Place& parent, std::string name, Names names = Names::may_repeat)
      : parent_(&parent), name_(std::move(name)), names_(names) {}

  // Like the operations of Tag, with a name where those have a path. Nothing happens at a place that cannot
  // be reached (see tag.h).
  void set_attribute(std::string_view name, Value value, const char* annotation_key = nullptr,
                     const char* annotation_text = nullptr);
  // For attributes whose names are distinct among all that are set here: no search when this Place made its
  // tag. Returns the attribute, for further annotations, or null.
  Attribute* set_distinct_attribute(std::string_view name, Value value, const char* annotation_key = nullptr,
                                    const char* annotation_text = nullptr);
  // Gives the tag at this place itself a value; this does not make the tag above it a branch.
  void set_value(Value value);
  // Append an annotation to an attribute of the tag at this place, or to that tag itself; nothing when it
  // does not exist. For set_value and annotate, as at a path's end, an empty name is a child's name.
  void annotate_attribute(std::string_view name, const char* key, const char* text);
  void annotate(const char* key, const char* text);

 private:
  Tag* reach(bool make_missing);
  Tag* reach_from_start(bool make_missing);
  Tag* find_or_make(Tag& parent, bool make_missing);

  Tag* start_ = nullptr;
  Place* parent_ = nullptr;
  std::string name_;
  Names names_ = Names::may_repeat;
  Tag* tag_ = nullptr;      // once found or made; tags are never removed, so it stays right
  bool passed_ = false;     // something below was reached, so the tag above is a branch
  bool made_here_ = false;  // the tag was made by this Place
};
