#include "inv/facts/path_trail.h"

#include "inv/facts/paths.h"

namespace inv {
namespace {

void add_segment(std::string& path, std::string_view segment) {
  if (path != "/") path += '/';
  path += segment;
}

}  // namespace

void PathTrail::enter(Element tag) {
  tags_.resize(tag.depth());
  if (tags_.empty()) {
    path_ = kind_ = path_of(tag);
    index_.clear();
    tags_.push_back({path_.size(), kind_.size(), 0, find_fact_below(kCatalogue, tag.name())});
    return;
  }
  const CatalogueFact* known = find_fact_below(tags_.back().known, tag.name());
  add(tag.name());
  tags_.push_back({path_.size(), kind_.size(), index_.size(), known});
}

void PathTrail::enter(const Attribute& attribute) { add(attribute.name); }

void PathTrail::add(std::string_view name) {
  const Tag& above = tags_.back();
  path_.resize(above.path);
  kind_.resize(above.kind);
  index_.resize(above.index);
  const size_t colon = name.find(':');
  add_segment(path_, name);
  add_segment(kind_, name.substr(0, colon));
  if (colon == name.npos) return;
  if (!index_.empty()) index_ += '/';
  index_ += name.substr(colon + 1);
}

}  // namespace inv
