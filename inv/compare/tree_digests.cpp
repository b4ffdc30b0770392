#include "inv/compare/tree_digests.h"

#include <functional>

#include "inv/facts/catalogue.h"

namespace inv {
namespace {

// Equal for elements of equal contents. Others may collide by chance or in a hostile file, so this only
// selects which elements to compare.
class Digest {
 public:
  void add(uint64_t number) { digest_ = (digest_ ^ number) * 0x100000001B3; }
  void add(std::string_view text) { add(std::hash<std::string_view>()(text)); }
  uint64_t value() const { return digest_; }

 private:
  uint64_t digest_ = 0xCBF29CE484222325;
};

bool is_passing(const CatalogueFact* element_fact, std::string_view attribute, bool element_passes) {
  const CatalogueFact* fact = find_fact_below(element_fact, attribute);
  return fact ? fact->passing : element_passes;
}

// For each record of a tree, from the top element on: whether it differs in every scan.
std::vector<bool> passing_records(Element top) {
  std::vector<const CatalogueFact*> facts;
  std::vector<bool> passing;
  for (const Record& record : top.subtree()) {
    const size_t place = facts.size();
    const size_t parent = place - record.parent_distance;
    const CatalogueFact* fact = place == 0 ? find_fact(top) : find_fact_below(facts[parent], record.name);
    passing.push_back(fact ? fact->passing : place > 0 && passing[parent]);
    facts.push_back(fact);
  }
  return passing;
}

}  // namespace

size_t TreeDigests::place_of(Element element) const {
  return static_cast<size_t>(element.subtree().begin() - top_.subtree().begin());
}

uint64_t TreeDigests::of(Element element) {
  if (digests_.empty()) make();
  return digests_[place_of(element)];
}

// From the last record to the first, so that children come before their parent.
void TreeDigests::make() {
  const std::vector<bool> passing = passing_records(top_);
  digests_.resize(passing.size());
  for (size_t place = digests_.size(); place-- > 0;) {
    digests_[place] = make_one(Element(top_.subtree().begin() + place), passing);
  }
}

uint64_t TreeDigests::make_one(Element element, const std::vector<bool>& passing) const {
  const bool all = facts_ == Facts::all;
  const bool passes = passing[place_of(element)];
  if (passes && !all) return 0;
  Digest digest;
  digest.add(element.name().substr(0, element.name().find(':')));
  digest.add(element.value());
  for (const Annotation& annotation : element.annotations()) {
    digest.add(annotation.key);
    digest.add(annotation.text);
  }
  const CatalogueFact* fact = find_fact(element);
  for (const Attribute& attribute : element.attributes()) {
    if (!all && is_passing(fact, attribute.name, passes)) continue;
    digest.add(attribute.name);
    digest.add(attribute.value);
  }
  for (const Element child : element.children()) digest.add(digests_[place_of(child)]);
  return digest.value();
}

}  // namespace inv
