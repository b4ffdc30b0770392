#include "inv/secrets/mask.h"

#include "inv/facts/catalogue.h"
#include "inv/secrets/secret_text.h"

namespace inv {
namespace {

constexpr std::string_view kVariable = "env-var:";

// The password in "a://b:c@" is the shortest secret that is unmistakable.
constexpr size_t kShortestUnmistakable = 8;

bool is_variable(std::string_view name) { return name.substr(0, kVariable.size()) == kVariable; }

bool is_own_value_of_variable(const TextPlace& place) {
  return !place.is_name && !place.attribute && is_variable(place.element.name());
}

bool can_hold_anything(const TextPlace& place) {
  if (place.is_name || !place.attribute) return false;
  const CatalogueFact* fact = find_fact_below(find_fact(place.element), place.attribute->name);
  return fact && fact->identifier == IdentifierKind::secret;
}

std::vector<TextPart> secrets_at(const TextPlace& place, std::string_view text) {
  if (is_own_value_of_variable(place) || (place.is_name && is_variable(text))) return secrets_in_line(text);
  if (!can_hold_anything(place))
    return text.size() < kShortestUnmistakable ? std::vector<TextPart>() : secret_shapes_in(text);
  const std::string_view element = place.element.name();
  return is_variable(element) ? secrets_in_variable(element.substr(kVariable.size()), text)
                              : secrets_in_line(text);
}

// A variable's name occurs three times.
bool is_repeated(const TextPlace& place) {
  return (place.is_name && place.attribute) || is_own_value_of_variable(place);
}

}  // namespace

size_t mask_secrets(Inventory& inventory) {
  size_t count = 0;
  const auto mask = [&count](const TextPlace& place, std::string_view text) -> std::optional<std::string> {
    const std::vector<TextPart> secrets = secrets_at(place, text);
    if (secrets.empty()) return std::nullopt;
    if (!is_repeated(place)) count += secrets.size();
    return masked(text, secrets);
  };
  for (Content& content : inventory.contents) {
    if (content.document) content.document->replace_texts(mask);
  }
  return count;
}

}  // namespace inv
