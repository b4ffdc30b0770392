#include "inv/compare/told_change.h"

#include <algorithm>
#include <functional>
#include <map>
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
  return change.is_of_element() && change.kind != Change::Kind::changed;
}

// Whether an element's own value changed.
bool is_own_value(const Change& change) {
  return change.is_of_element() && change.kind == Change::Kind::changed;
}

// What the catalogue says about the changed attribute; null for other changes.
const CatalogueFact* attribute_fact(const Change& change) {
  const Attribute* attribute = change.attribute();
  return attribute ? find_fact_below(find_fact(change.element()), attribute->name) : nullptr;
}

constexpr uint32_t kNone = static_cast<uint32_t>(-1);

// The changes of a thing, as a linked list: a vector for each of millions of things would take more memory
// than their text.
struct Note {
  uint32_t change;
  uint32_t next;
};

// A thing that changed. One of the two may be missing.
struct Thing {
  Element old_thing;
  Element new_thing;
  Element successor;  // what replaced the old one
  uint32_t first_note = kNone;
  uint32_t last_note = kNone;
  bool came = false;
  bool went = false;
  bool is_told = true;

  Element any() const { return new_thing ? new_thing : old_thing; }
};

// The things that changed, with their notes.
struct Things {
  std::vector<Thing> list;
  std::vector<Note> notes;

  void note(Thing& thing, size_t change) {
    const auto place = static_cast<uint32_t>(notes.size());
    notes.push_back({static_cast<uint32_t>(change), kNone});
    (thing.first_note == kNone ? thing.first_note : notes[thing.last_note].next) = place;
    thing.last_note = place;
  }

  // Appends the notes of `other` to those of the thing. Both have notes.
  void take_notes(Thing& thing, const Thing& other) {
    notes[thing.last_note].next = other.first_note;
    thing.last_note = other.last_note;
  }

  // Calls visit(place of a change) for each change of a thing.
  template <typename Visit>
  void each_change(const Thing& thing, Visit visit) const {
    for (uint32_t place = thing.first_note;; place = notes[place].next) {
      visit(size_t{notes[place].change});
      if (place == thing.last_note) return;
    }
  }
};

// A value for each element of the trees in use, indexed by record, which takes less memory than a map.
template <typename Value>
class ValuesOfElements {
 public:
  explicit ValuesOfElements(Value unset) : unset_(unset) {}

  typename std::vector<Value>::reference of(Element element) {
    const Record* record = record_of(element);
    for (Tree& tree : trees_) {
      const bool is_in_tree =
          !std::less<>()(record, tree.records.begin()) && std::less<>()(record, tree.records.end());
      if (is_in_tree) return tree.values[static_cast<size_t>(record - tree.records.begin())];
    }
    Element top = element;
    while (top.parent()) top = top.parent();
    trees_.push_back({top.subtree(), std::vector<Value>(top.subtree().size(), unset_)});
    return of(element);
  }

 private:
  struct Tree {
    Range<Record> records;
    std::vector<Value> values;
  };

  Value unset_;
  std::vector<Tree> trees_;
};

// Groups the changes by thing.
class ThingCollector {
 public:
  Things things;

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
  // The thing that an element belongs to; details belong to the thing of their element.
  Element thing_at(Element element) {
    const Element thing = thing_of(element);
    for (Element above = element; above && above != thing; above = above.parent()) {
      const Element main = main_of(above);
      if (main) return main;
    }
    return thing;
  }

  Element main_of(Element element) {
    return tells_more(element) ? inv::main_of(element, counterparts_.of(element)) : Element();
  }

  // Adds a change of a thing, or of an element that belongs to none, which then counts as a thing.
  void note(Element old_thing, Element new_thing, const Change& change, size_t place) {
    const bool is_part = old_thing || new_thing;
    Thing& thing =
        is_part ? thing_of_pair(old_thing, new_thing) : thing_of_pair(change.old_element, change.new_element);
    things.note(thing, place);
  }

  // Adds a part that came or went; its thing may be in both files.
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
    things.note(thing, place);
  }

  // If a whole list came or went, each thing in it did. False if there are none in it.
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

  Thing& thing_of_pair(Element old_thing, Element new_thing) {
    uint32_t& place = places_.of(new_thing ? new_thing : old_thing);
    if (place == kNone) {
      place = static_cast<uint32_t>(things.list.size());
      things.list.push_back({});
      things.list.back().new_thing = new_thing;
    }
    Thing& thing = things.list[place];
    if (!thing.old_thing) thing.old_thing = old_thing;
    return thing;
  }

  ValuesOfElements<uint32_t> places_{kNone};  // in the list of things
  CounterpartsByTree counterparts_;
};

// Knows which changes merely follow from others. The changes of an element's value, annotations and
// attributes are adjacent.
class Followers {
 public:
  explicit Followers(const std::vector<Change>& changes) : says_no_more_(changes.size()) {
    ValuesOfElements<bool> climbed(false);
    for (const Change& change : changes) {
      changed_.insert(attribute_fact(change));
      for (Element element = change.element(); element && !climbed.of(element); element = element.parent()) {
        climbed.of(element) = true;
        changed_.insert(find_fact(element));
      }
    }
    for (auto first = changes.begin(); first != changes.end();) {
      const auto is_another = [&](const Change& change) { return change.element() != first->element(); };
      const auto last = std::find_if(first, changes.end(), is_another);
      for (auto change = first; change != last; ++change) {
        says_no_more_[static_cast<size_t>(change - changes.begin())] =
            follows_changed(attribute_fact(*change)) || element_follows(change->element()) ||
            repeats_own_value(*change, *first) || follows_one(*change, first, last);
      }
      first = last;
    }
  }

  bool says_no_more(size_t place) const { return says_no_more_[place]; }

 private:
  using Changes = std::vector<Change>::const_iterator;
  enum class Answer : char { unknown, yes, no };

  bool follows_changed(const CatalogueFact* fact) const {
    return fact && fact->wording.follows && changed_.count(fact->wording.follows) > 0;
  }

  // Whether the element, or one above it, follows a changed fact.
  bool element_follows(Element element) {
    if (!element) return false;
    const Answer known = element_follows_.of(element);
    if (known != Answer::unknown) return known == Answer::yes;
    const bool follows = follows_changed(find_fact(element)) || element_follows(element.parent());
    element_follows_.of(element) = follows ? Answer::yes : Answer::no;
    return follows;
  }

  static bool repeats_own_value(const Change& change, const Change& first) {
    return is_own_value(first) && !change.is_of_element() && first.old_value() == change.old_value() &&
           first.new_value() == change.new_value();
  }

  static bool follows_one(const Change& change, Changes first, Changes last) {
    const CatalogueFact* fact = attribute_fact(change);
    if (!fact || fact->wording.follows_one.empty()) return false;
    return std::any_of(first, last, [&](const Change& other) {
      return other.attribute() && other.attribute()->name == fact->wording.follows_one;
    });
  }

  std::unordered_set<const CatalogueFact*> changed_;  // of attributes, elements and all above
  ValuesOfElements<Answer> element_follows_{Answer::unknown};
  std::vector<bool> says_no_more_;
};

bool is_replaceable(Element thing) {
  const CatalogueFact* fact = find_fact(thing);
  return fact && fact->wording.replaceable;
}

// Among things of one kind below one element, the first that came replaced the first that went, and so on.
void pair_replaced(Things& things) {
  using Place = std::pair<const CatalogueFact*, std::string>;
  std::map<Place, std::vector<Thing*>> went;
  const auto place_of = [](Element thing) { return Place(find_fact(thing), path_of(thing.parent())); };
  for (Thing& thing : things.list) {
    if (thing.went && is_replaceable(thing.old_thing)) went[place_of(thing.old_thing)].push_back(&thing);
  }
  if (went.empty()) return;
  for (auto& [place, gone] : went) std::reverse(gone.begin(), gone.end());
  for (Thing& thing : things.list) {
    if (!thing.came || !is_replaceable(thing.new_thing)) continue;
    const auto found = went.find(place_of(thing.new_thing));
    if (found == went.end() || found->second.empty()) continue;
    Thing& gone = *found->second.back();
    found->second.pop_back();
    gone.successor = thing.new_thing;
    things.take_notes(gone, thing);
    thing.is_told = false;
  }
}

// Whether it is a different thing in the same place, by which alone the two are paired.
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

// "Disk"; the path if there is no word.
std::string noun_of(Element thing) {
  const CatalogueFact* fact = find_fact(thing);
  const bool has_noun = fact && !fact->wording.called.empty();
  return has_noun ? std::string(fact->wording.called) : shown(path_of(thing));
}

std::string with_blank(const std::string& text) { return text.empty() ? "" : text + " "; }

// The words for an element below a thing, and for the elements between: "h freq ".
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
  if (is_own_value(change) && words.empty()) words = "name ";
  if (const Annotation* annotation = change.annotation())
    words += printable(word_for(fact, annotation->key)) + " ";
  if (const Attribute* attribute = change.attribute())
    words += printable(word_for(fact, attribute->name)) + " ";
  const auto value = [&](std::string_view text, std::string_view base) {
    return text.empty() && is_whole_element(change) ? "" : value_or_nothing(fact, text, base);
  };
  switch (change.kind) {
    case Change::Kind::added:
      return words + with_blank(value(change.new_value(), change.new_base())) + "added";
    case Change::Kind::removed:
      return words + with_blank(value(change.old_value(), change.old_base())) + "removed";
    case Change::Kind::changed:
      return words + value(change.old_value(), change.old_base()) + " to " +
             value(change.new_value(), change.new_base());
  }
  return words;
}

}  // namespace

class ToldChanges::Teller {
 public:
  explicit Teller(std::vector<Change> its_changes) : changes(std::move(its_changes)), followers_(changes) {
    ThingCollector collector;
    for (size_t i = 0; i < changes.size(); ++i) collector.add(changes[i], i);
    things_ = std::move(collector.things);
    pair_replaced(things_);
    count_names();
    for (size_t i = 0; i < things_.list.size(); ++i) {
      if (things_.list[i].is_told && !is_silent(things_.list[i])) told_.push_back(static_cast<uint32_t>(i));
    }
  }

  const std::vector<Change> changes;

  size_t size() const { return told_.size(); }

  ToldChange tell(size_t place) const {
    const Thing& thing = things_.list[told_[place]];
    ToldChange told;
    told.kind = kind_of(thing);
    told.thing = noun_of(thing.any());
    told.sentence = sentence(told, thing);
    return told;
  }

  std::vector<size_t> changes_of(size_t place) const {
    std::vector<size_t> all;
    things_.each_change(things_.list[told_[place]], [&](size_t change) { all.push_back(change); });
    return all;
  }

 private:
  bool is_silent(const Thing& thing) const {
    bool silent = true;
    things_.each_change(thing, [&](size_t place) { silent = silent && followers_.says_no_more(place); });
    return silent;
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

  // The beginning of the sentence, followed by the changed facts.
  std::string changed_sentence(const std::string& noun, const Thing& thing) const {
    std::vector<const Change*> all, rest;
    const Change* version = nullptr;
    bool renamed = false;
    things_.each_change(thing, [&](size_t place) {
      if (followers_.says_no_more(place)) return;
      const Change& change = changes[place];
      all.push_back(&change);
      const bool is_own = change.element() == thing.any() && change.kind == Change::Kind::changed;
      if (is_own && change.attribute() && change.attribute()->name == kVersion) {
        version = &change;
      } else if (is_own && change.is_of_element()) {
        renamed = true;
      } else {
        rest.push_back(&change);
      }
    });
    if (renamed && is_described(thing)) {
      return noun + " " + shown(description_of(thing.old_thing)) + " to " +
             shown(description_of(thing.new_thing)) + told_facts(", ", rest, thing);
    }
    if (version && is_described(thing)) {
      return shown(name_of(thing.new_thing)) + bracket_if_needed(thing) + " " + shown(version->old_value()) +
             " to " + shown(version->new_value()) + told_facts(", ", rest, thing);
    }
    return subject(noun, thing) + told_facts(": ", all, thing);
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

  // Equal for things of the same name; if two names collide by chance, they only get superfluous brackets.
  static size_t name_key(const Thing& thing) {
    return std::hash<std::string>()(noun_of(thing.any()) + " " + name_of(thing.any()));
  }

  void count_names() {
    for (const Thing& thing : things_.list) name_keys_.push_back(name_key(thing));
    std::sort(name_keys_.begin(), name_keys_.end());
  }

  size_t times_changed(const Thing& thing) const {
    const auto [first, last] = std::equal_range(name_keys_.begin(), name_keys_.end(), name_key(thing));
    return static_cast<size_t>(last - first);
  }

  // If two things have the same name, the brackets distinguish them.
  std::string bracket_if_needed(const Thing& thing) const {
    const std::string bracket = shown(bracket_of(thing.new_thing));
    return !bracket.empty() && times_changed(thing) > 1 ? " " + bracket : "";
  }

  Followers followers_;
  Things things_;
  std::vector<size_t> name_keys_;  // of all things, sorted
  std::vector<uint32_t> told_;     // which things have a sentence
};

ToldChanges::ToldChanges(std::vector<Change> changes)
    : teller_(std::make_unique<const Teller>(std::move(changes))) {}

ToldChanges::ToldChanges(ToldChanges&& other) noexcept = default;

ToldChanges::~ToldChanges() = default;

const std::vector<Change>& ToldChanges::changes() const { return teller_->changes; }

size_t ToldChanges::size() const { return teller_->size(); }

ToldChange ToldChanges::operator[](size_t place) const { return teller_->tell(place); }

std::vector<size_t> ToldChanges::changes_of(size_t place) const { return teller_->changes_of(place); }

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
