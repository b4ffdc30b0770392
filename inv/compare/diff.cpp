#include "inv/compare/diff.h"

#include <unordered_map>

#include "inv/base/json_text.h"
#include "inv/base/utf8.h"
#include "inv/facts/catalogue.h"
#include "inv/facts/element_identity.h"
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

class Differ {
 public:
  Differ(const Inventory& old_inventory, const Inventory& new_inventory, Facts facts)
      : old_(old_inventory),
        new_(new_inventory),
        facts_(facts),
        old_counterparts_(old_inventory.snapshot_top()),
        new_counterparts_(new_inventory.snapshot_top()) {}

  // Pair after pair from a list of its own: a tree from outside is never walked by recursion.
  void compare_trees(Element old_top, Element new_top) {
    if (!old_top && !new_top) return;
    if (!old_top) return add(new_top);
    if (!new_top) return remove(old_top);
    std::vector<Pair> pending = {{old_top, new_top}};
    while (!pending.empty()) {
      const Pair pair = pending.back();
      pending.pop_back();
      compare_own(pair);
      const std::vector<Pair> children = compare_children(pair);
      pending.insert(pending.end(), children.rbegin(), children.rend());
    }
  }

  std::vector<Change> changes;

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
      report(pair, "", pair.old_element.value(), pair.new_element.value());
    }
    compare_names(pair, pair.old_element.annotations(), pair.new_element.annotations());
    compare_names(pair, pair.old_element.attributes(), pair.new_element.attributes());
  }

  static std::string_view name_of(const Attribute& attribute) { return attribute.name; }
  static std::string_view value_of(const Attribute& attribute) { return attribute.value; }
  static std::string_view name_of(const Annotation& annotation) { return annotation.key; }
  static std::string_view value_of(const Annotation& annotation) { return annotation.text; }
  static std::string change_name(const Attribute& attribute) { return std::string(attribute.name); }
  static std::string change_name(const Annotation& annotation) { return "~" + std::string(annotation.key); }

  template <typename Item>
  using ByName = std::unordered_map<std::string_view, const Item*>;

  // The first item of each name.
  template <typename Item>
  static ByName<Item> by_name(const Range<Item>& items) {
    ByName<Item> named;
    for (const Item& item : items) named.emplace(name_of(item), &item);
    return named;
  }

  // Attributes, or annotations, of two elements that are the same thing. What repeats a name is not looked
  // at.
  template <typename Item>
  void compare_names(const Pair& pair, const Range<Item>& old_items, const Range<Item>& new_items) {
    const ByName<Item> old_named = by_name(old_items);
    const ByName<Item> new_named = by_name(new_items);
    for (const Item& item : old_items) {
      if (old_named.at(name_of(item)) != &item) continue;
      const auto counterpart = new_named.find(name_of(item));
      if (counterpart == new_named.end()) {
        report(pair, change_name(item), value_of(item), {}, Change::Kind::removed);
      } else if (differ(value_of(item), value_of(*counterpart->second))) {
        report(pair, change_name(item), value_of(item), value_of(*counterpart->second));
      }
    }
    for (const Item& item : new_items) {
      if (old_named.count(name_of(item)) > 0) continue;
      report(pair, change_name(item), {}, value_of(item), Change::Kind::added);
    }
  }

  // Reports the children that only one side has and gives those that both have.
  std::vector<Pair> compare_children(const Pair& pair) {
    std::unordered_map<std::string, std::vector<Element>> waiting;
    for (const Element child : pair.new_element.children()) {
      waiting[identity_of(child, new_counterparts_)].push_back(child);
    }
    std::unordered_map<std::string, size_t> taken;
    std::vector<Pair> pairs;
    for (const Element child : pair.old_element.children()) {
      const std::string identity = identity_of(child, old_counterparts_);
      const auto candidates = waiting.find(identity);
      size_t& next = taken[identity];
      if (candidates != waiting.end() && next < candidates->second.size()) {
        pairs.push_back({child, candidates->second[next++]});
      } else {
        remove(child);
      }
    }
    for (const Element child : pair.new_element.children()) {
      size_t& left = taken[identity_of(child, new_counterparts_)];
      if (left > 0) {
        --left;
      } else {
        add(child);
      }
    }
    return pairs;
  }

  void add(Element element) {
    if (is_left_out(element)) return;
    Change change = change_of(element, new_counterparts_);
    change.kind = Change::Kind::added;
    change.new_value = element.value();
    changes.push_back(std::move(change));
  }

  void remove(Element element) {
    if (is_left_out(element)) return;
    Change change = change_of(element, old_counterparts_);
    change.kind = Change::Kind::removed;
    change.old_path = change.path;
    change.old_value = element.value();
    changes.push_back(std::move(change));
  }

  void report(const Pair& pair, const std::string& name, std::string_view old_value,
              std::string_view new_value, Change::Kind kind = Change::Kind::changed) {
    if (is_left_out(pair.new_element, name)) return;
    Change change = change_of(pair.new_element, new_counterparts_);
    change.kind = kind;
    change.old_path = path_of(pair.old_element);
    if (!name.empty()) {
      change.path = path_below(pair.new_element, name);
      change.old_path = path_below(pair.old_element, name);
    }
    change.name = name;
    change.old_value = old_value;
    change.new_value = new_value;
    changes.push_back(std::move(change));
  }

  static Change change_of(Element element, Counterparts& counterparts) {
    Change change;
    change.path = path_of(element);
    change.identity = identity_of(element, counterparts);
    change.label = element.value().empty() ? element.name() : element.value();
    return change;
  }

  bool is_left_out(Element element, std::string_view name = {}) const {
    return facts_ == Facts::lasting && is_passing(element, name);
  }

  const Inventory& old_;
  const Inventory& new_;
  Facts facts_;
  Counterparts old_counterparts_;
  Counterparts new_counterparts_;
};

}  // namespace

std::vector<Change> diff(const Inventory& old_inventory, const Inventory& new_inventory, Facts facts) {
  Differ differ(old_inventory, new_inventory, facts);
  differ.compare_trees(old_inventory.snapshot_top(), new_inventory.snapshot_top());
  differ.compare_trees(old_inventory.asset_top(), new_inventory.asset_top());
  return std::move(differ.changes);
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

std::string describe(const Change& change, const Terminal& terminal) {
  std::string line = printable(change.path);
  if (change.name.empty() || change.label != change.identity) {
    line += "  " + terminal.dim(printable(change.label));
    if (change.identity != change.label) line += terminal.dim(" (" + printable(change.identity) + ")");
  }
  const std::string old_value = printable(change.old_value);
  const std::string new_value = printable(change.new_value);
  switch (change.kind) {
    case Change::Kind::added:
      return terminal.green("+ ") + line + (change.name.empty() ? "" : "  " + terminal.green(new_value)) +
             "\n";
    case Change::Kind::removed:
      return terminal.red("- ") + line + (change.name.empty() ? "" : "  " + terminal.red(old_value)) + "\n";
    case Change::Kind::changed:
      return terminal.yellow("~ ") + line + "  " + terminal.red(old_value) + " -> " +
             terminal.green(new_value) + "\n";
  }
  return line;
}

std::string changes_json(const std::vector<Change>& changes) {
  Json list = Json::array();
  for (const Change& change : changes) {
    list.push_back({{"change", kind_text(change.kind)},
                    {"path", json_text(change.path)},
                    {"old_path", json_text(change.old_path)},
                    {"identity", json_text(change.identity)},
                    {"label", json_text(change.label)},
                    {"name", json_text(change.name)},
                    {"old", json_text(change.old_value)},
                    {"new", json_text(change.new_value)}});
  }
  return list.dump(1) + "\n";
}

}  // namespace inv
