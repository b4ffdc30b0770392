#include "inv/compare/diff.h"

#include <deque>
#include <functional>
#include <unordered_map>
#include <unordered_set>

#include "inv/compare/alignment.h"
#include "inv/compare/tree_digests.h"
#include "inv/facts/catalogue.h"
#include "inv/facts/element_identity.h"
#include "inv/facts/facts.h"
#include "inv/facts/paths.h"

namespace inv {
namespace {

// Whether an element or, if there is a name, that part of it differs in every scan. What the catalogue does
// not know follows the element that it is below.
bool is_passing(Element element, std::string_view name) {
  const CatalogueFact* fact = name.empty() ? nullptr : find_fact_below(find_fact(element), name);
  for (; !fact && element; element = element.parent()) fact = find_fact(element);
  return fact && fact->passing;
}

// "disk" from "disk:3"; empty for a name without such a number.
std::string_view list_of(std::string_view name) {
  const size_t colon = name.find(':');
  if (colon == name.npos || colon + 1 == name.size()) return {};
  const bool digits = name.find_first_not_of("0123456789", colon + 1) == name.npos;
  return digits ? name.substr(0, colon) : std::string_view();
}

std::string_view name_of(const Attribute& attribute) { return attribute.name; }
std::string_view value_of(const Attribute& attribute) { return attribute.value; }
bool counts(const Attribute& attribute) { return is_fact(attribute); }

std::string_view name_of(const Annotation& annotation) { return annotation.key; }
std::string_view value_of(const Annotation& annotation) { return annotation.text; }
bool counts(const Annotation&) { return true; }

void refer_to(const Attribute* old_item, const Attribute* new_item, Change& change) {
  change.old_attribute = old_item;
  change.new_attribute = new_item;
}
void refer_to(const Annotation* old_item, const Annotation* new_item, Change& change) {
  change.old_annotation = old_item;
  change.new_annotation = new_item;
}

// The attributes, or the annotations, of an element: the first of each name.
template <typename Item>
class Items {
 public:
  explicit Items(const Range<Item>& items) {
    for (const Item& item : items) {
      if (counts(item) && by_name_.emplace(name_of(item), &item).second) in_order_.push_back(&item);
    }
  }

  const std::vector<const Item*>& in_order() const { return in_order_; }
  const Item* find(std::string_view name) const {
    const auto found = by_name_.find(name);
    return found == by_name_.end() ? nullptr : found->second;
  }

 private:
  std::vector<const Item*> in_order_;
  std::unordered_map<std::string_view, const Item*> by_name_;
};

// Calls `pair_up` for each old item with the new one that it became.
template <typename Items, typename DigestOld, typename DigestNew, typename PairUp>
void align_items(const Items& old_items, const Items& new_items, DigestOld digest_old, DigestNew digest_new,
                 PairUp pair_up) {
  std::vector<uint64_t> old_digests, new_digests;
  for (const auto& item : old_items) old_digests.push_back(digest_old(item));
  for (const auto& item : new_items) new_digests.push_back(digest_new(item));
  const std::vector<size_t> partners = align(old_digests, new_digests);
  for (size_t i = 0; i < partners.size(); ++i) {
    if (partners[i] != kNoPartner) pair_up(old_items[i], new_items[partners[i]]);
  }
}

// For each old item the new one of the same name or, if the name only numbers it, the one that it became.
template <typename Item>
std::unordered_map<const Item*, const Item*> partners_of(const Items<Item>& old_items,
                                                         const Items<Item>& new_items) {
  std::unordered_map<const Item*, const Item*> partners;
  struct Group {
    std::vector<const Item*> old_items;
    std::vector<const Item*> new_items;
  };
  std::unordered_map<std::string_view, Group> numbered;
  for (const Item* item : old_items.in_order()) {
    const std::string_view list = list_of(name_of(*item));
    if (!list.empty()) {
      numbered[list].old_items.push_back(item);
    } else if (const Item* partner = new_items.find(name_of(*item))) {
      partners.emplace(item, partner);
    }
  }
  for (const Item* item : new_items.in_order()) {
    const std::string_view list = list_of(name_of(*item));
    if (!list.empty()) numbered[list].new_items.push_back(item);
  }
  const auto digest = [](const Item* item) -> uint64_t {
    return std::hash<std::string_view>()(value_of(*item));
  };
  for (const auto& [list, group] : numbered) {
    align_items(group.old_items, group.new_items, digest, digest,
                [&](const Item* old_item, const Item* new_item) { partners.emplace(old_item, new_item); });
  }
  return partners;
}

// The key of an element, shared by elements that may be the same thing.
struct Key {
  std::string_view text;
  bool is_list = false;  // the text is the name of a list, not an identity

  bool operator==(const Key& other) const { return text == other.text && is_list == other.is_list; }
};

struct HashKey {
  size_t operator()(const Key& key) const { return std::hash<std::string_view>()(key.text); }
};

// One of the two trees, and what is known about its elements.
class Side {
 public:
  Side(Element top, Facts facts) : digests_(top, facts), counterparts_(top) {}

  uint64_t digest_of(Element element) { return digests_.of(element); }

  // An element with details of another one has that one's identity. A key is valid as long as this object.
  Key key_of(Element element) {
    const CatalogueFact* fact = find_fact(element);
    const Element main = main_of(element, counterparts_);
    std::string joined;
    const std::string_view identity = own_identity_of(main ? main : element, joined);
    if (!joined.empty()) return {joined_.emplace_back(std::move(joined))};
    if (!identity.empty()) return {identity};
    if (main) return {main.name()};
    const std::string_view list = list_of(element.name());
    const bool only_numbered = !list.empty() && !(fact && fact->known_by.empty());
    return only_numbered ? Key{list, true} : Key{element.name()};
  }

 private:
  TreeDigests digests_;
  Counterparts counterparts_;
  std::deque<std::string> joined_;  // keys that are not in the tree's text
};

// The children of one side of a pair, grouped by key.
class GroupedChildren {
 public:
  std::vector<Element> elements;

  // Adds a child with the number of its group.
  void add(Element child, size_t group) {
    elements.push_back(child);
    groups_.push_back(static_cast<uint32_t>(group));
  }

  // Call once, after all have been added.
  void sort(size_t groups) {
    starts_.assign(groups + 1, 0);
    for (const uint32_t group : groups_) ++starts_[group + 1];
    for (size_t i = 0; i < groups; ++i) starts_[i + 1] += starts_[i];
    places_.resize(groups_.size());
    std::vector<uint32_t> next = starts_;
    for (size_t i = 0; i < groups_.size(); ++i) places_[next[groups_[i]]++] = static_cast<uint32_t>(i);
  }

  // The places of a group's members, in order.
  Range<uint32_t> places_of(size_t group) const {
    return {places_.data() + starts_[group], places_.data() + starts_[group + 1]};
  }

 private:
  std::vector<uint32_t> groups_;  // for each child
  std::vector<uint32_t> starts_;  // of each group in places_
  std::vector<uint32_t> places_;  // group after group
};

class TreeComparison {
 public:
  TreeComparison(const Inventory& old_inventory, const Inventory& new_inventory, Element old_top,
                 Element new_top, Facts facts, std::vector<Change>& changes)
      : old_(old_inventory),
        new_(new_inventory),
        old_top_(old_top),
        new_top_(new_top),
        old_side_(old_top, facts),
        new_side_(new_top, facts),
        facts_(facts),
        changes_(changes) {}

  // Takes the pairs from a list: a foreign tree is never walked recursively.
  void run() {
    if (!old_top_ && !new_top_) return;
    if (!old_top_) return report_element(Change::Kind::added, {}, new_top_, {});
    if (!new_top_) return report_element(Change::Kind::removed, old_top_, {}, {});
    std::vector<Pair> pending = {{old_top_, new_top_}};
    while (!pending.empty()) {
      const Pair pair = pending.back();
      pending.pop_back();
      compare_own(pair);
      const std::vector<Pair> children = compare_children(pair);
      pending.insert(pending.end(), children.rbegin(), children.rend());
    }
  }

 private:
  struct Pair {
    Element old_element;
    Element new_element;
  };
  // Two secrets may look the same where they are masked.
  bool differ(std::string_view old_text, std::string_view new_text) const {
    return old_text != new_text || old_.original(old_text) != new_.original(new_text);
  }

  void compare_own(const Pair& pair) {
    if (differ(pair.old_element.value(), pair.new_element.value())) {
      report_element(Change::Kind::changed, pair.old_element, pair.new_element, {});
    }
    compare_items(pair, pair.old_element.annotations(), pair.new_element.annotations());
    compare_items(pair, pair.old_element.attributes(), pair.new_element.attributes());
  }

  // The attributes, or annotations, of two paired elements.
  template <typename Item>
  void compare_items(const Pair& pair, const Range<Item>& old_range, const Range<Item>& new_range) {
    const Items<Item> old_items(old_range);
    const Items<Item> new_items(new_range);
    const auto partners = partners_of(old_items, new_items);
    std::unordered_set<const Item*> paired;
    for (const Item* item : old_items.in_order()) {
      const auto found = partners.find(item);
      const Item* partner = found == partners.end() ? nullptr : found->second;
      if (partner) paired.insert(partner);
      if (!partner || differ(value_of(*item), value_of(*partner))) report_item(pair, item, partner);
    }
    for (const Item* item : new_items.in_order()) {
      if (paired.count(item) == 0) report_item<Item>(pair, nullptr, item);
    }
  }

  // An attribute, or annotation, that changed; null on the side that lacks it.
  template <typename Item>
  void report_item(const Pair& pair, const Item* old_item, const Item* new_item) {
    const Change::Kind kind = !old_item   ? Change::Kind::added
                              : !new_item ? Change::Kind::removed
                                          : Change::Kind::changed;
    Change change;
    change.kind = kind;
    change.old_element = pair.old_element;
    change.new_element = pair.new_element;
    refer_to(old_item, new_item, change);
    report(change);
  }

  // Reports the children that only one side has, and returns those that both have.
  std::vector<Pair> compare_children(const Pair& pair) {
    GroupedChildren old_children, new_children;
    const std::vector<size_t> partners = pair_children(pair, old_children, new_children);
    std::vector<bool> paired(new_children.elements.size());
    std::vector<Pair> pairs;
    for (size_t i = 0; i < partners.size(); ++i) {
      const Element child = old_children.elements[i];
      if (partners[i] == kNoPartner) {
        report_element(Change::Kind::removed, child, {}, pair);
      } else {
        pairs.push_back({child, new_children.elements[partners[i]]});
        paired[partners[i]] = true;
      }
    }
    for (size_t i = 0; i < paired.size(); ++i) {
      if (!paired[i]) report_element(Change::Kind::added, {}, new_children.elements[i], pair);
    }
    return pairs;
  }

  // For each old child the place of the new one that it became, or kNoPartner.
  std::vector<size_t> pair_children(const Pair& pair, GroupedChildren& old_children,
                                    GroupedChildren& new_children) {
    const size_t groups = group_children(pair, old_children, new_children);
    std::vector<size_t> partners(old_children.elements.size(), kNoPartner);
    for (size_t group = 0; group < groups; ++group) {
      const Range<uint32_t> old_places = old_children.places_of(group);
      const Range<uint32_t> new_places = new_children.places_of(group);
      if (old_places.size() == 1 && new_places.size() == 1) {
        partners[*old_places.begin()] = *new_places.begin();
      } else if (!old_places.empty() && !new_places.empty()) {
        align_items(
            old_places, new_places,
            [&](uint32_t place) { return old_side_.digest_of(old_children.elements[place]); },
            [&](uint32_t place) { return new_side_.digest_of(new_children.elements[place]); },
            [&](uint32_t old_place, uint32_t new_place) { partners[old_place] = new_place; });
      }
    }
    return partners;
  }

  // The number of groups.
  size_t group_children(const Pair& pair, GroupedChildren& old_children, GroupedChildren& new_children) {
    std::unordered_map<Key, size_t, HashKey> groups;
    const auto add = [&](Side& side, Element parent, GroupedChildren& children) {
      for (const Element child : parent.children()) {
        children.add(child, groups.try_emplace(side.key_of(child), groups.size()).first->second);
      }
    };
    add(old_side_, pair.old_element, old_children);
    add(new_side_, pair.new_element, new_children);
    old_children.sort(groups.size());
    new_children.sort(groups.size());
    return groups.size();
  }

  void report_element(Change::Kind kind, Element old_element, Element new_element, const Pair& above) {
    Change change;
    change.kind = kind;
    change.old_element = old_element;
    change.new_element = new_element;
    change.old_above = above.old_element;
    change.new_above = above.new_element;
    report(change);
  }

  void report(const Change& change) {
    const std::string_view attribute = change.attribute() ? change.attribute()->name : std::string_view();
    if (facts_ == Facts::all || !is_passing(change.element(), attribute)) changes_.push_back(change);
  }

  const Inventory& old_;
  const Inventory& new_;
  Element old_top_;
  Element new_top_;
  Side old_side_;
  Side new_side_;
  Facts facts_;
  std::vector<Change>& changes_;
};

// Of the element, or of something in it.
std::string path_in(Element element, const std::string& name) {
  return name.empty() ? path_of(element) : path_below(element, name);
}

std::string name_of_change(const Attribute* attribute, const Annotation* annotation) {
  if (annotation) return "~" + std::string(annotation->key);
  return attribute ? std::string(attribute->name) : "";
}

std::string_view value_in(Element element, const Attribute* attribute, const Annotation* annotation,
                          bool is_of_element) {
  if (is_of_element) return element.value();
  if (annotation) return annotation->text;
  return attribute ? attribute->value : std::string_view();
}

std::string_view base_of(const Attribute* attribute) {
  return attribute ? attribute->annotation("base-value") : std::string_view();
}

}  // namespace

std::string Change::path() const { return path_in(element(), name()); }

std::string Change::old_path() const {
  if (!old_element) return "";
  const bool was_there = old_attribute || old_annotation;
  return path_in(old_element, was_there ? name_of_change(old_attribute, old_annotation) : name());
}

std::string_view Change::label() const {
  return element().value().empty() ? element().name() : element().value();
}

std::string Change::name() const { return name_of_change(attribute(), annotation()); }

std::string_view Change::old_value() const {
  return value_in(old_element, old_attribute, old_annotation, is_of_element());
}

std::string_view Change::new_value() const {
  return value_in(new_element, new_attribute, new_annotation, is_of_element());
}

std::string_view Change::old_base() const { return base_of(old_attribute); }

std::string_view Change::new_base() const { return base_of(new_attribute); }

std::vector<Change> diff(const Inventory& old_inventory, const Inventory& new_inventory, Facts facts) {
  std::vector<Change> changes;
  const auto compare = [&](Element old_top, Element new_top) {
    TreeComparison(old_inventory, new_inventory, old_top, new_top, facts, changes).run();
  };
  compare(old_inventory.snapshot_top(), new_inventory.snapshot_top());
  compare(old_inventory.asset_top(), new_inventory.asset_top());
  return changes;
}

const CatalogueFact* attribute_fact(const Change& change) {
  const Attribute* attribute = change.attribute();
  return attribute ? find_fact_below(find_fact(change.element()), attribute->name) : nullptr;
}

const char* kind_text(Change::Kind kind) {
  switch (kind) {
    case Change::Kind::added:
      return "added";
    case Change::Kind::removed:
      return "removed";
    case Change::Kind::changed:
      return "changed";
  }
  return "";
}

}  // namespace inv
