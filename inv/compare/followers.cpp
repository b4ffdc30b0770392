#include "inv/compare/followers.h"

#include <algorithm>

namespace inv {
namespace {

using Changes = std::vector<Change>::const_iterator;

bool repeats_own_value(const Change& change, const Change& first) {
  return first.is_own_value() && !change.is_of_element() && first.old_value() == change.old_value() &&
         first.new_value() == change.new_value();
}

bool follows_one(const Change& change, Changes first, Changes last) {
  const CatalogueFact* fact = attribute_fact(change);
  if (!fact || fact->wording.follows_one.empty()) return false;
  return std::any_of(first, last, [&](const Change& other) {
    return other.attribute() && other.attribute()->name == fact->wording.follows_one;
  });
}

}  // namespace

Followers::Followers(const std::vector<Change>& changes) : says_no_more_(changes.size()) {
  collect_changed(changes);
  for (auto first = changes.begin(); first != changes.end();) {
    const auto is_another = [&](const Change& change) { return change.element() != first->element(); };
    const auto last = std::find_if(first, changes.end(), is_another);
    for (auto change = first; change != last; ++change) {
      says_no_more_[static_cast<size_t>(change - changes.begin())] =
          follows_changed(attribute_fact(*change)) || element_follows(change->element()) ||
          repeats_own_value(*change, *first) || follows_one(*change, first, last);
    }
    first = last;
  }
}

void Followers::collect_changed(const std::vector<Change>& changes) {
  ValuesOfElements<bool> climbed(false);
  for (const Change& change : changes) {
    changed_.insert(attribute_fact(change));
    for (Element element = change.element(); element && !climbed.of(element); element = element.parent()) {
      climbed.of(element) = true;
      changed_.insert(find_fact(element));
    }
  }
}

bool Followers::follows_changed(const CatalogueFact* fact) const {
  return fact && fact->wording.follows && changed_.count(fact->wording.follows) > 0;
}

// Whether the element, or one above it, follows a changed fact.
bool Followers::element_follows(Element element) {
  if (!element) return false;
  const Answer known = element_follows_.of(element);
  if (known != Answer::unknown) return known == Answer::yes;
  const bool follows = follows_changed(find_fact(element)) || element_follows(element.parent());
  element_follows_.of(element) = follows ? Answer::yes : Answer::no;
  return follows;
}

}  // namespace inv
