#include "inv/facts/facts.h"

namespace inv {

std::string_view unit_of(const CatalogueFact* tag, const Attribute& attribute) {
  const std::string_view stated = attribute.annotation("units");
  if (!stated.empty()) return stated;
  const CatalogueFact* fact = find_fact_below(tag, attribute.name);
  return fact ? fact->unit : std::string_view();
}

}  // namespace inv
