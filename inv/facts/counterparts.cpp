#include "inv/facts/counterparts.h"

#include <algorithm>

namespace inv {
namespace {

std::string_view number_in(std::string_view name) { return name.substr(name.find(':') + 1); }

// "Soft:N" becomes "Soft:7" for an element "Soft:7".
std::string name_beside(std::string_view pattern, std::string_view name) {
  if (pattern == "*") return std::string(name);
  return std::string(pattern.substr(0, pattern.find(':') + 1)).append(number_in(name));
}

}  // namespace

Element Counterparts::find(std::string_view path, Element element) {
  const size_t slash = path.rfind('/');
  const Named& children = children_of(path.substr(0, slash));
  const auto found = children.find(name_beside(path.substr(slash + 1), element.name()));
  return found == children.end() ? Element() : found->second;
}

const Counterparts::Named& Counterparts::children_of(std::string_view list_path) {
  const auto known = lists_.find(list_path);
  if (known != lists_.end()) return known->second;
  Element list = top_;
  for (std::string_view rest = list_path; !rest.empty();) {
    rest.remove_prefix(1);
    list = list.child(rest.substr(0, rest.find('/')));
    rest.remove_prefix(std::min(rest.find('/'), rest.size()));
  }
  Named& children = lists_[std::string(list_path)];
  for (const Element child : list.children()) children.emplace(child.name(), child);
  return children;
}

Counterparts& CounterpartsByTree::of(Element element) {
  Element top = element;
  while (top.parent()) top = top.parent();
  return trees_.try_emplace(top.subtree().begin(), top).first->second;
}

}  // namespace inv
