#include "inv/compare/told_change.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "inv/base/utf8.h"
#include "inv/facts/catalogue.h"
#include "inv/facts/element_identity.h"
#include "inv/facts/paths.h"
#include "inv/facts/thing.h"

namespace inv {
namespace {

using Kind = ToldChange::Kind;

constexpr size_t kWidestValue = 100;
constexpr size_t kMostFacts = 8;
constexpr std::string_view kVersion = "version";

const Record* record_of(Element element) { return element ? element.subtree().begin() : nullptr; }

std::string shown(std::string_view value) { return shorten(printable(value), kWidestValue); }

bool is_whole_element(const Change& change) {
  return change.name.empty() && change.kind != Change::Kind::changed;
}

bool is_annotation(const Change& change) { return !change.name.empty() && change.name[0] == '~'; }

// What the catalogue says of the attribute that changed; null for other changes.
const CatalogueFact* attribute_fact(const Change& change) {
  return change.name.empty() || is_annotation(change)
             ? nullptr
             : find_fact_below(find_fact(change.element()), change.name);
}

// A thing of which something changed. One of the two may be missing.
struct Thing {
  Element old_thing;
  Element new_thing;
  Element successor;  // what took the place of the old one
  bool came = false;
  bool went = false;
  bool is_told = true;
  std::vector<size_t> changes;

  Element any() const { return new_thing ? new_thing : old_thing; }
};

// Collects the changes by the things that they are about.
class ThingCollector {
 public:
  std::vector<Thing> things;

  void add(const Change& change, size_t place) {
    if (!is_whole_element(change)) {
      note(thing_at(change.old_element), thing_at(change.new_element), change, place);
    } else if (thing_at(change.element()) == change.element()) {
      note_whole(change.element(), change, place);
    } else if (!add_things_in(change, place)) {
      note_part(change, place);
    }
  }

 private:
  // The thing that an element belongs to; what only says more about another one belongs to that.
  Element thing_at(Element element) {
    const Element thing = thing_of(element);
    for (Element above = element; above && above != thing; above = above.parent()) {
      const Element main = main_of(above);
      if (main) return main;
    }
    return thing;
  }

  Element main_of(Element element) {
    if (!tells_more(element)) return {};
    Element top = element;
    while (top.parent()) top = top.parent();
    return inv::main_of(element, counterparts_.try_emplace(record_of(top), top).first->second);
  }

  // What changed about a thing; or about an element that belongs to none, which then stands for itself.
  void note(Element old_thing, Element new_thing, const Change& change, size_t place) {
    const bool is_part = old_thing || new_thing;
    Thing& thing =
        is_part ? thing_of_pair(old_thing, new_thing) : thing_of_pair(change.old_element, change.new_element);
    thing.changes.push_back(place);
  }

  // A part of a thing that came or went, while the thing itself may be there in both files.
  void note_part(const Change& change, size_t place) {
    const Element thing = thing_at(change.element());
    if (!thing) return note_whole(change.element(), change, place);
    if (change.kind == Change::Kind::added) return note(thing_at(change.old_above), thing, change, place);
    note(thing, thing_at(change.new_above), change, place);
  }

  void note_whole(Element thing_itself, const Change& change, size_t place) {
    const bool came = change.kind == Change::Kind::added;
    Thing& thing = thing_of_pair(came ? Element() : thing_itself, came ? thing_itself : Element());
    (came ? thing.came : thing.went) = true;
    thing.changes.push_back(place);
  }

  // A list that came or went as a whole: each thing in it did. False when there are none in it.
  bool add_things_in(const Change& change, size_t place) {
    const Range<Record> records = change.element().subtree();
    bool found = false;
    for (const Record* record = records.begin(); record != records.end();) {
      const Element element(record);
      if (thing_of(element) == element) {
        note_whole(element, change, place);
        found = true;
        record += record->subtree_size;
      } else {
        ++record;
      }
    }
    return found;
  }

  Thing& begin(Element old_thing, Element new_thing) {
    things.push_back({old_thing, new_thing, {}, false, false, true, {}});
    return things.back();
  }

  Thing& thing_of_pair(Element old_thing, Element new_thing) {
    const auto [found, is_new] =
        places_.try_emplace(record_of(new_thing ? new_thing : old_thing), things.size());
    if (is_new) return begin(old_thing, new_thing);
    Thing& thing = things[found->second];
    if (!thing.old_thing) thing.old_thing = old_thing;
    return thing;
  }

  std::unordered_map<const Record*, size_t> places_;
  std::unordered_map<const Record*, Counterparts> counterparts_;  // by the top of their tree
};

// Knows which changes say no more than others.
class Followers {
 public:
  explicit Followers(const std::vector<Change>& changes) {
    std::unordered_set<const Record*> climbed;
    for (const Change& change : changes) {
      changed_.insert(attribute_fact(change));
      for (Element element = change.element(); element && climbed.insert(record_of(element)).second;
           element = element.parent()) {
        changed_.insert(find_fact(element));
      }
      const Record* record = record_of(change.element());
      if (!change.name.empty()) {
        attributes_.emplace(record, change.name);
      } else if (change.kind == Change::Kind::changed) {
        own_values_.emplace(record, &change);
      }
    }
  }

  bool says_no_more(const Change& change) const {
    return follows_changed(attribute_fact(change)) || element_follows(change.element()) ||
           repeats_own_value(change) || follows_one(change);
  }

 private:
  bool follows_changed(const CatalogueFact* fact) const {
    return fact && fact->telling.follows && changed_.count(fact->telling.follows) > 0;
  }

  // Whether the element, or one above it, follows a fact that changed.
  bool element_follows(Element element) const {
    if (!element) return false;
    const auto known = element_follows_.find(record_of(element));
    if (known != element_follows_.end()) return known->second;
    const bool follows = follows_changed(find_fact(element)) || element_follows(element.parent());
    element_follows_.emplace(record_of(element), follows);
    return follows;
  }

  bool repeats_own_value(const Change& change) const {
    const auto found = own_values_.find(record_of(change.element()));
    if (change.name.empty() || found == own_values_.end()) return false;
    const Change& own = *found->second;
    return own.old_value == change.old_value && own.new_value == change.new_value;
  }

  bool follows_one(const Change& change) const {
    const CatalogueFact* fact = attribute_fact(change);
    if (!fact || fact->telling.follows_one.empty()) return false;
    return attributes_.count({record_of(change.element()), fact->telling.follows_one}) > 0;
  }

  std::unordered_set<const CatalogueFact*> changed_;                 // of attributes, elements and all above
  mutable std::unordered_map<const Record*, bool> element_follows_;  // of the elements that were asked for
  std::unordered_map<const Record*, const Change*> own_values_;      // of elements whose own value changed
  std::set<std::pair<const Record*, std::string_view>> attributes_;  // those that changed, by their elements
};

bool is_replaceable(Element thing) {
  const CatalogueFact* fact = find_fact(thing);
  return fact && fact->telling.replaceable;
}

// Of the things of one kind below one element, what came takes the place of what went, the first of the
// first.
void pair_replaced(std::vector<Thing>& things) {
  using Place = std::pair<const CatalogueFact*, std::string>;
  std::map<Place, std::vector<Thing*>> went;
  const auto place_of = [](Element thing) { return Place(find_fact(thing), path_of(thing.parent())); };
  for (Thing& thing : things) {
    if (thing.went && is_replaceable(thing.old_thing)) went[place_of(thing.old_thing)].push_back(&thing);
  }
  if (went.empty()) return;
  for (auto& [place, gone] : went) std::reverse(gone.begin(), gone.end());
  for (Thing& thing : things) {
    if (!thing.came || !is_replaceable(thing.new_thing)) continue;
    const auto found = went.find(place_of(thing.new_thing));
    if (found == went.end() || found->second.empty()) continue;
    Thing& gone = *found->second.back();
    found->second.pop_back();
    gone.successor = thing.new_thing;
    gone.changes.insert(gone.changes.end(), thing.changes.begin(), thing.changes.end());
    thing.is_told = false;
  }
}

// Another thing in the same place, which is all that the two are paired by.
bool is_another(const Thing& thing) {
  return thing.old_thing && thing.new_thing && is_replaceable(thing.new_thing) &&
         own_identity_of(thing.new_thing).empty() &&
         description_of(thing.old_thing) != description_of(thing.new_thing);
}

Kind kind_of(const Thing& thing) {
  if (thing.successor) return Kind::replaced;
  if (thing.came) return Kind::added;
  if (thing.went) return Kind::removed;
  if (!thing.old_thing || !thing.new_thing) return Kind::changed;
  const bool was_there = is_there(thing.old_thing);
  const bool is_there_now = is_there(thing.new_thing);
  if (was_there != is_there_now) return was_there ? Kind::removed : Kind::added;
  return is_another(thing) ? Kind::replaced : Kind::changed;
}

// "Disk"; the path of what has no word.
std::string noun_of(Element thing) {
  const CatalogueFact* fact = find_fact(thing);
  const bool has_noun = fact && !fact->telling.called.empty();
  return has_noun ? std::string(fact->telling.called) : shown(path_of(thing));
}

std::string with_blank(const std::string& text) { return text.empty() ? "" : text + " "; }

// The words for an element below a thing, and for those between: "h freq ".
std::string words_to(Element element, Element thing) {
  std::string words;
  for (; element && element != thing; element = element.parent()) {
    const CatalogueFact* fact = find_fact(element);
    if (tells_more(element)) break;
    std::string name = word_for(fact, element.name());
    std::replace(name.begin(), name.end(), ':', ' ');
    words = name + " " + words;
  }
  return words;
}

std::string value_or_nothing(const CatalogueFact* fact, std::string_view value, std::string_view base) {
  return value.empty() ? "nothing" : shown(readable_value(fact, value, base));
}

// "firmware A to B", "info X added", "v mode 3 1280 x 1024 removed".
std::string told_fact(const Change& change, Element thing) {
  const CatalogueFact* fact = attribute_fact(change);
  const Element element = change.element();
  std::string words = printable(words_to(element, thing));
  if (change.name.empty()) {
    if (change.kind == Change::Kind::changed && words.empty()) words = "name ";
  } else {
    words += printable(word_for(fact, is_annotation(change) ? change.name.substr(1) : change.name)) + " ";
  }
  const auto value = [&](std::string_view text, std::string_view base) {
    return text.empty() && is_whole_element(change) ? "" : value_or_nothing(fact, text, base);
  };
  switch (change.kind) {
    case Change::Kind::added:
      return words + with_blank(value(change.new_value, change.new_base)) + "added";
    case Change::Kind::removed:
      return words + with_blank(value(change.old_value, change.old_base)) + "removed";
    case Change::Kind::changed:
      return words + value(change.old_value, change.old_base) + " to " +
             value(change.new_value, change.new_base);
  }
  return words;
}

class Teller {
 public:
  explicit Teller(const std::vector<Change>& changes) : changes_(changes), followers_(changes) {}

  std::vector<ToldChange> tell() {
    ThingCollector collector;
    for (size_t i = 0; i < changes_.size(); ++i) collector.add(changes_[i], i);
    pair_replaced(collector.things);
    for (const Thing& thing : collector.things) ++times_changed_[name_key(thing)];
    std::vector<ToldChange> told;
    for (const Thing& thing : collector.things) {
      if (thing.is_told && !is_silent(thing)) told.push_back(tell_of(thing));
    }
    return told;
  }

 private:
  bool is_silent(const Thing& thing) const {
    return std::all_of(thing.changes.begin(), thing.changes.end(),
                       [&](size_t place) { return followers_.says_no_more(changes_[place]); });
  }

  ToldChange tell_of(const Thing& thing) const {
    ToldChange told;
    told.kind = kind_of(thing);
    told.thing = noun_of(thing.any());
    told.changes = thing.changes;
    told.sentence = sentence(told, thing);
    return told;
  }

  std::string sentence(const ToldChange& told, const Thing& thing) const {
    switch (told.kind) {
      case Kind::added:
        return whole_sentence(told, thing.new_thing);
      case Kind::removed:
        return whole_sentence(told, thing.old_thing);
      case Kind::replaced:
        return told.thing + " replaced: " + named(description_of(thing.old_thing)) + " by " +
               named(thing.successor ? description_of(thing.successor) : contents_of(thing.new_thing));
      case Kind::changed:
        return changed_sentence(told.thing, thing);
    }
    return "";
  }

  static std::string whole_sentence(const ToldChange& told, Element thing) {
    const std::string description = shown(description_of(thing));
    if (!is_there(thing))
      return with_blank(told.thing) + with_blank(description) + kind_text(told.kind) + ", empty";
    return told.thing + " " + kind_text(told.kind) + (description.empty() ? "" : ": " + description);
  }

  static std::string named(const std::string& description) {
    return description.empty() ? "one without a name" : shown(description);
  }

  // What the sentence begins with, and which facts it tells with that.
  std::string changed_sentence(const std::string& noun, const Thing& thing) const {
    std::vector<const Change*> rest;
    const Change* version = nullptr;
    bool renamed = false;
    for (const size_t place : thing.changes) {
      const Change& change = changes_[place];
      if (followers_.says_no_more(change)) continue;
      const bool is_own = change.element() == thing.any();
      if (is_own && change.kind == Change::Kind::changed && change.name == kVersion) {
        version = &change;
      } else if (is_own && change.kind == Change::Kind::changed && change.name.empty()) {
        renamed = true;
      } else {
        rest.push_back(&change);
      }
    }
    if (renamed && is_described(thing)) {
      return noun + " " + shown(description_of(thing.old_thing)) + " to " +
             shown(description_of(thing.new_thing)) + told_facts(", ", rest, thing);
    }
    if (version && is_described(thing)) {
      return shown(name_of(thing.new_thing)) + bracket_if_needed(thing) + " " + shown(version->old_value) +
             " to " + shown(version->new_value) + told_facts(", ", rest, thing);
    }
    rest.clear();
    for (const size_t place : thing.changes) {
      if (!followers_.says_no_more(changes_[place])) rest.push_back(&changes_[place]);
    }
    return subject(noun, thing) + told_facts(": ", rest, thing);
  }

  static bool is_described(const Thing& thing) {
    return thing.old_thing && thing.new_thing && !name_of(thing.old_thing).empty() &&
           !name_of(thing.new_thing).empty();
  }

  static std::string subject(const std::string& noun, const Thing& thing) {
    std::string subject = noun;
    for (const std::string& part : {name_of(thing.any()), bracket_of(thing.any())}) {
      if (!part.empty()) subject += " " + shown(part);
    }
    return subject;
  }

  static std::string told_facts(const char* before, const std::vector<const Change*>& facts,
                                const Thing& thing) {
    std::string text;
    for (size_t i = 0; i < facts.size() && i < kMostFacts; ++i) {
      text += (i == 0 ? before : ", ") +
              told_fact(*facts[i], facts[i]->new_element ? thing.new_thing : thing.old_thing);
    }
    if (facts.size() > kMostFacts) text += " and " + std::to_string(facts.size() - kMostFacts) + " more";
    return text;
  }

  static std::string name_key(const Thing& thing) {
    return noun_of(thing.any()) + " " + name_of(thing.any());
  }

  // A second Safari needs more than its name.
  std::string bracket_if_needed(const Thing& thing) const {
    const std::string bracket = shown(bracket_of(thing.new_thing));
    return times_changed_.at(name_key(thing)) > 1 && !bracket.empty() ? " " + bracket : "";
  }

  const std::vector<Change>& changes_;
  Followers followers_;
  std::unordered_map<std::string, size_t> times_changed_;  // things of one name
};

}  // namespace

std::vector<ToldChange> tell(const std::vector<Change>& changes) { return Teller(changes).tell(); }

const char* kind_text(ToldChange::Kind kind) {
  switch (kind) {
    case Kind::added:
      return "added";
    case Kind::removed:
      return "removed";
    case Kind::replaced:
      return "replaced";
    case Kind::changed:
      return "changed";
  }
  return "";
}

}  // namespace inv
