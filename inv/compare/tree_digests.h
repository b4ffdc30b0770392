// Numbers for what is in the elements of a tree: equal for elements of equal contents.
#pragma once

#include <cstdint>
#include <vector>

#include "inv/compare/diff.h"

namespace inv {

class TreeDigests {
 public:
  // What the other facts say does not count.
  TreeDigests(Element top, Facts facts) : top_(top), facts_(facts) {}

  // Of an element of the tree with all below it; the number in its name does not count. All of them are made
  // when the first is asked for, in one walk.
  uint64_t of(Element element);

 private:
  void make();
  uint64_t make_one(Element element, const std::vector<bool>& passing) const;
  size_t place_of(Element element) const;

  Element top_;
  Facts facts_;
  std::vector<uint64_t> digests_;  // of each record
};

}  // namespace inv
