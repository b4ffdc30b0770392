#include "inv/facts/element_identity.h"

#include "inv/facts/catalogue.h"

namespace inv {
namespace {

bool is_elsewhere(std::string_view part) { return !part.empty() && part.front() == '/'; }

Range<std::string_view> known_by(Element element) {
  const CatalogueFact* fact = find_fact(element);
  return fact ? fact->known_by : Range<std::string_view>();
}

}  // namespace

bool has_details(Element element) {
  const Range<std::string_view> parts = known_by(element);
  return !parts.empty() && is_elsewhere(*parts.begin());
}

Element main_of(Element element, Counterparts& counterparts) {
  return has_details(element) ? counterparts.find(*known_by(element).begin(), element) : Element();
}

std::string own_identity_of(Element element) {
  std::string joined;
  return std::string(own_identity_of(element, joined));
}

std::string_view own_identity_of(Element element, std::string& joined) {
  std::string_view identity;
  for (const std::string_view attribute : known_by(element)) {
    if (is_elsewhere(attribute)) continue;
    const std::string_view part = attribute.empty() ? element.value() : element.text(attribute);
    if (part.empty()) continue;
    if (identity.empty()) {
      identity = part;
      continue;
    }
    if (joined.empty()) joined = identity;
    identity = joined.append(" ").append(part);
  }
  return identity;
}

std::string identity_of(Element element, Counterparts& counterparts) {
  const Element main = main_of(element, counterparts);
  const std::string identity = own_identity_of(main ? main : element);
  return identity.empty() ? std::string((main ? main : element).name()) : identity;
}

}  // namespace inv
