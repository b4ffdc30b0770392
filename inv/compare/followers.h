// Which changes follow from others, and need no mention beside them.
#pragma once

#include <unordered_set>
#include <vector>

#include "inv/compare/diff.h"
#include "inv/compare/values_of_elements.h"
#include "inv/facts/catalogue.h"

namespace inv {

// The changes are in the order in which diff() returns them: those of an element's value, annotations and
// attributes are adjacent.
class Followers {
 public:
  explicit Followers(const std::vector<Change>& changes);

  // Whether the change in this place follows one that the catalogue names, repeats that of its element's
  // value, or is below something that follows.
  bool says_no_more(size_t place) const { return says_no_more_[place]; }

 private:
  enum class Answer : char { unknown, yes, no };

  void collect_changed(const std::vector<Change>& changes);
  bool follows_changed(const CatalogueFact* fact) const;
  bool element_follows(Element element);

  std::unordered_set<const CatalogueFact*> changed_;  // of attributes, elements and all above
  ValuesOfElements<Answer> element_follows_{Answer::unknown};
  std::vector<bool> says_no_more_;
};

}  // namespace inv
