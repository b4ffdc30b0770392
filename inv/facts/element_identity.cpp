#include "inv/facts/element_identity.h"

#include "inv/facts/catalogue.h"

namespace inv {

std::string identity_of(Element element, Counterparts& counterparts) {
  const CatalogueFact* fact = find_fact(element);
  const Range<std::string_view> known_by = fact ? fact->known_by : Range<std::string_view>();
  std::string identity;
  for (const std::string_view attribute : known_by) {
    if (!attribute.empty() && attribute.front() == '/') {
      const Element other = counterparts.find(attribute, element);
      return other ? identity_of(other, counterparts) : std::string(element.name());
    }
    const std::string_view part = attribute.empty() ? element.value() : element.text(attribute);
    if (part.empty()) continue;
    if (!identity.empty()) identity += ' ';
    identity += part;
  }
  return identity.empty() ? std::string(element.name()) : identity;
}

}  // namespace inv
