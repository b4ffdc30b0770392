// The paths of all tags and attributes during a walk through a tree in the order of its text: each extends
// the one above it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inv/facts/catalogue.h"
#include "inv/file/document.h"

namespace inv {

class PathTrail {
 public:
  // Enters a tag; its parent, if any, must have been entered before.
  void enter(Element tag);
  // Enters an attribute of the last tag.
  void enter(const Attribute& attribute);

  // The current place, as facts.h explains; valid until the next one is entered.
  std::string_view path() const { return path_; }
  std::string_view kind() const { return kind_; }
  std::string_view index() const { return index_; }
  // The last tag: its path, and what the catalogue knows about it.
  std::string_view tag_path() const { return std::string_view(path_).substr(0, tags_.back().path); }
  const CatalogueFact* known() const { return tags_.back().known; }

 private:
  // How much of each text belongs to a tag.
  struct Tag {
    size_t path;
    size_t kind;
    size_t index;
    const CatalogueFact* known;
  };

  void add(std::string_view name);

  std::string path_;
  std::string kind_;
  std::string index_;
  std::vector<Tag> tags_;  // from the top one down
};

}  // namespace inv
