#include "inv/facts/catalogue.h"

#include <algorithm>
#include <map>

namespace inv {
namespace {

std::string_view up_to_colon(std::string_view name) { return name.substr(0, name.find(':')); }

// Most names differ in length, which is quicker to compare.
bool is_before(const CatalogueFact& fact, std::string_view name) {
  return fact.name.size() != name.size() ? fact.name.size() < name.size() : fact.name < name;
}

using IdentifiersByName = std::map<std::string_view, IdentifierKind>;

void add_identifiers(const CatalogueFact& fact, IdentifiersByName& named) {
  if (fact.identifier) named.emplace(fact.name, *fact.identifier);
  for (const CatalogueFact& below : fact.below) add_identifiers(below, named);
}

IdentifiersByName identifiers_by_name() {
  IdentifiersByName named;
  add_identifiers(kCatalogue[0], named);
  return named;
}

}  // namespace

const CatalogueFact* find_fact_below(const CatalogueFact* fact, std::string_view name) {
  if (!fact) return nullptr;
  name = up_to_colon(name);
  const CatalogueFact* found = std::lower_bound(fact->below.begin(), fact->below.end(), name, is_before);
  return found != fact->below.end() && found->name == name ? found : nullptr;
}

const CatalogueFact* find_fact(Element element) {
  // A foreign file may nest tags far deeper than any fact, and the climb would start from each.
  if (!element || element.depth() > kCatalogueDepth) return nullptr;
  const Element above = element.parent();
  return find_fact_below(above ? find_fact(above) : kCatalogue, element.name());
}

std::optional<IdentifierKind> identifier_by_name(std::string_view name) {
  static const IdentifiersByName kByName = identifiers_by_name();
  const auto found = kByName.find(up_to_colon(name));
  return found == kByName.end() ? std::nullopt : std::make_optional(found->second);
}

}  // namespace inv
