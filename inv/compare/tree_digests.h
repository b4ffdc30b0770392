// Digests of the elements of a tree: equal for elements of equal contents.
#pragma once

#include <cstdint>
#include <vector>

#include "inv/compare/diff.h"

namespace inv {

class TreeDigests {
 public:
  // Other facts do not count.
  TreeDigests(Element top, Facts facts) : top_(top), facts_(facts) {}

  // The digest of an element with everything below it, ignoring the number in its name. The first call makes
  // all of them in one walk.
  uint64_t of(Element element);

 private:
  void make();
  uint64_t make_one(Element element, const std::vector<bool>& passing) const;
  size_t place_of(Element element) const;

  Element top_;
  Facts facts_;
  std::vector<uint64_t> digests_;  // one for each record
};

}  // namespace inv
