#include "inv/compare/diff.h"

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

// Whether no two scans have an element or, when there is a name, that part of it in common. What the
// catalogue does not know passes with what it is below.
bool is_passing(Element element, std::string_view name) {
  const CatalogueFact* fact = name.empty() ? nullptr : find_fact_below(find_fact(element), name);
  for (; !fact && element; element = element.parent()) fact = find_fact(element);
  return fact && fact->passing;
}

// "disk" of "disk:3"; empty for a name without such a number.
std::string_view list_of(std::string_view name) {
  const size_t colon = name.find(':');
  if (colon == name.npos || colon + 1 == name.size()) return {};
  const bool digits = name.find_first_not_of("0123456789", colon + 1) == name.npos;
  return digits ? name.substr(0, colon) : std::string_view();
}

std::string_view name_of(const Attribute& attribute) { return attribute.name; }
std::string_view value_of(const Attribute& attribute) { return attribute.value; }
std::string_view base_of(const Attribute& attribute) { return attribute.annotation("base-value"); }
bool counts(const Attribute& attribute) { return is_fact(attribute); }
std::string change_name(const Attribute& attribute) { return std::string(attribute.name); }

std::string_view name_of(const Annotation& annotation) { return annotation.key; }
std::string_view value_of(const Annotation& annotation) { return annotation.text; }
std::string_view base_of(const Annotation&) { return {}; }
bool counts(const Annotation&) { return true; }
std::string change_name(const Annotation& annotation) { return "~" + std::string(annotation.key); }

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

// What two lists whose items are known by the same have in common.
template <typename Item>
struct Group {
  std::vector<Item> old_items;
  std::vector<Item> new_items;
};

// Hands each old item of a group with the new one that it became to `pair_up`.
template <typename Item, typename DigestOld, typename DigestNew, typename PairUp>
void align_group(const Group<Item>& group, DigestOld digest_old, DigestNew digest_new, PairUp pair_up) {
  std::vector<uint64_t> old_digests, new_digests;
  for (const Item& item : group.old_items) old_digests.push_back(digest_old(item));
  for (const Item& item : group.new_items) new_digests.push_back(digest_new(item));
  const std::vector<size_t> partners = align(old_digests, new_digests);
  for (size_t i = 0; i < partners.size(); ++i) {
    if (partners[i] != kNoPartner) pair_up(group.old_items[i], group.new_items[partners[i]]);
  }
}

// For each old item the new one of the same name or, when the name only numbers it, the one that it became.
template <typename Item>
std::unordered_map<const Item*, const Item*> partners_of(const Items<Item>& old_items,
                                                         const Items<Item>& new_items) {
  std::unordered_map<const Item*, const Item*> partners;
  std::unordered_map<std::string_view, Group<const Item*>> numbered;
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
    align_group(group, digest, digest,
                [&](const Item* old_item, const Item* new_item) { partners.emplace(old_item, new_item); });
  }
  return partners;
}

// One of the two trees, and what is known of its elements.
class Side {
 public:
  Side(Element top, Facts facts) : digests_(top, facts), counterparts_(top) {}

  uint64_t digest_of(Element element) { return digests_.of(element); }
  std::string identity(Element element) { return identity_of(element, counterparts_); }

  // What an element is known by, which is what those have in common that may be the same thing. What says
  // more about another element is known by that one's identity.
  std::string key_of(Element element) {
    const CatalogueFact* fact = find_fact(element);
    const Element main = main_of(element, counterparts_);
    if (main) return identity_of(main, counterparts_);
    const std::string identity = own_identity_of(element);
    if (!identity.empty()) return identity;
    const std::string_view list = list_of(element.name());
    const bool only_numbered = !list.empty() && !(fact && fact->known_by.empty());
    // No identity begins with a colon where others do not, so they are not mixed up.
    return only_numbered ? ":" + std::string(list) : std::string(element.name());
  }

 private:
  TreeDigests digests_;
  Counterparts counterparts_;
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

  // Pair after pair from a list of its own: a tree from outside is never walked by recursion.
  void run() {
    if (!old_top_ && !new_top_) return;
    if (!old_top_) return add(new_top_, {});
    if (!new_top_) return remove(old_top_, {});
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
  // New elements by the old ones that became them.
  using Partners = std::unordered_map<const Record*, Element>;

  static const Record* record_of(Element element) { return element.subtree().begin(); }

  // Two secrets may look the same where they are masked.
  bool differ(std::string_view old_text, std::string_view new_text) const {
    return old_text != new_text || old_.original(old_text) != new_.original(new_text);
  }

  void compare_own(const Pair& pair) {
    if (differ(pair.old_element.value(), pair.new_element.value())) {
      Change change = change_of(Change::Kind::changed, pair.old_element, pair.new_element);
      change.old_value = pair.old_element.value();
      change.new_value = pair.new_element.value();
      report(std::move(change));
    }
    compare_items(pair, pair.old_element.annotations(), pair.new_element.annotations());
    compare_items(pair, pair.old_element.attributes(), pair.new_element.attributes());
  }

  // Attributes, or annotations, of two elements that are the same thing.
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
    Change change = change_of(kind, pair.old_element, pair.new_element);
    change.name = change_name(new_item ? *new_item : *old_item);
    change.path = path_below(pair.new_element, change.name);
    change.old_path = path_below(pair.old_element, old_item ? change_name(*old_item) : change.name);
    if (old_item) {
      change.old_value = value_of(*old_item);
      change.old_base = base_of(*old_item);
    }
    if (new_item) {
      change.new_value = value_of(*new_item);
      change.new_base = base_of(*new_item);
    }
    report(std::move(change));
  }

  // Reports the children that only one side has and gives those that both have.
  std::vector<Pair> compare_children(const Pair& pair) {
    const Partners partners = pair_children(pair);
    std::unordered_set<const Record*> paired;
    std::vector<Pair> pairs;
    for (const Element child : pair.old_element.children()) {
      const auto partner = partners.find(record_of(child));
      if (partner == partners.end()) {
        remove(child, pair);
      } else {
        pairs.push_back({child, partner->second});
        paired.insert(record_of(partner->second));
      }
    }
    for (const Element child : pair.new_element.children()) {
      if (paired.count(record_of(child)) == 0) add(child, pair);
    }
    return pairs;
  }

  Partners pair_children(const Pair& pair) {
    std::unordered_map<std::string, Group<Element>> groups;
    for (const Element child : pair.old_element.children()) {
      groups[old_side_.key_of(child)].old_items.push_back(child);
    }
    for (const Element child : pair.new_element.children()) {
      groups[new_side_.key_of(child)].new_items.push_back(child);
    }
    Partners partners;
    const auto pair_up = [&](Element old_child, Element new_child) {
      partners.emplace(record_of(old_child), new_child);
    };
    for (const auto& [key, group] : groups) {
      if (group.old_items.size() == 1 && group.new_items.size() == 1) {
        pair_up(group.old_items[0], group.new_items[0]);
      } else if (!group.old_items.empty() && !group.new_items.empty()) {
        align_group(
            group, [&](Element element) { return old_side_.digest_of(element); },
            [&](Element element) { return new_side_.digest_of(element); }, pair_up);
      }
    }
    return partners;
  }

  void add(Element element, const Pair& above) {
    Change change = change_of(Change::Kind::added, {}, element);
    change.old_above = above.old_element;
    change.new_above = above.new_element;
    change.new_value = element.value();
    report(std::move(change));
  }

  void remove(Element element, const Pair& above) {
    Change change = change_of(Change::Kind::removed, element, {});
    change.old_above = above.old_element;
    change.new_above = above.new_element;
    change.old_value = element.value();
    report(std::move(change));
  }

  Change change_of(Change::Kind kind, Element old_element, Element new_element) {
    Change change;
    change.kind = kind;
    change.old_element = old_element;
    change.new_element = new_element;
    const Element element = change.element();
    change.path = path_of(element);
    if (old_element) change.old_path = path_of(old_element);
    change.identity = (new_element ? new_side_ : old_side_).identity(element);
    change.label = element.value().empty() ? element.name() : element.value();
    return change;
  }

  void report(Change change) {
    if (facts_ == Facts::lasting && is_passing(change.element(), change.name)) return;
    changes_.push_back(std::move(change));
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

}  // namespace

std::vector<Change> diff(const Inventory& old_inventory, const Inventory& new_inventory, Facts facts) {
  std::vector<Change> changes;
  const auto compare = [&](Element old_top, Element new_top) {
    TreeComparison(old_inventory, new_inventory, old_top, new_top, facts, changes).run();
  };
  compare(old_inventory.snapshot_top(), new_inventory.snapshot_top());
  compare(old_inventory.asset_top(), new_inventory.asset_top());
  return changes;
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
