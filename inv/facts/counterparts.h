// Elements that tell more of other elements. An extended scan puts what it learns of an application, a disk
// or an adapter beside the old list, under the same number.
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

  // The element that a path from the top names beside another one: "N" at its end stands for the other's
  // number,
  // "*" for its name. "/Software-details/Soft:N" of /Software/Soft:7 is /Software-details/Soft:7. None when
  // there is no such element.
  Element find(std::string_view path, Element element);

 private:
  using Named = std::unordered_map<std::string_view, Element>;

  const Named& children_of(std::string_view list_path);

  Element top_;
  std::map<std::string, Named, std::less<>> lists_;
};

}  // namespace inv
