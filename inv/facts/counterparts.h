// Elements with details of other elements. An extended scan puts what it learns about an application, a disk
// or an adapter into a separate list, under the same number.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

#include "inv/file/document.h"

namespace inv {

class Counterparts {
 public:
  explicit Counterparts(Element top) : top_(top) {}

  Element top() const { return top_; }

  // The counterpart of an element at a path from the top: "N" at its end stands for the element's number, "*"
  // for its name. For "/Software-details/Soft:N" and /Software/Soft:7 it is /Software-details/Soft:7. Empty
  // if there is no such element.
  Element find(std::string_view path, Element element);

 private:
  using Named = std::unordered_map<std::string_view, Element>;

  const Named& children_of(std::string_view list_path);

  Element top_;
  std::map<std::string, Named, std::less<>> lists_;
};

// The counterparts in whichever tree an element is.
class CounterpartsByTree {
 public:
  Counterparts& of(Element element);

 private:
  std::unordered_map<const Record*, Counterparts> trees_;  // by their tops
};

}  // namespace inv
