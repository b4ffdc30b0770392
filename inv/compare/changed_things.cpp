#include "inv/compare/changed_things.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include "inv/compare/values_of_elements.h"
#include "inv/facts/catalogue.h"
#include "inv/facts/counterparts.h"
#include "inv/facts/element_identity.h"
#include "inv/facts/paths.h"
#include "inv/facts/thing.h"

namespace inv {

class ChangedThings::Collector {
 public:
  explicit Collector(ChangedThings& things) : things_(things) {}

  void add(const Change& change, size_t place) {
    if (!change.is_whole_element()) {
      note(thing_at(change.old_element), thing_at(change.new_element), change, place);
    } else if (thing_at(change.element()) == change.element()) {
      note_whole(change.element(), change, place);
    } else if (!add_things_in(change, place)) {
      note_part(change, place);
    }
  }

 private:
  // The thing that an element belongs to.
  Element thing_at(Element element) {
    const Element thing = thing_of(element);
    for (Element above = element; above && above != thing; above = above.parent()) {
      const Element main = main_of(above);
      if (main) return main;
    }
    return thing;
  }

  Element main_of(Element element) {
    return has_details(element) ? inv::main_of(element, counterparts_.of(element)) : Element();
  }

  void note(Element old_thing, Element new_thing, const Change& change, size_t place) {
    const bool is_part = old_thing || new_thing;
    ChangedThing& thing =
        is_part ? thing_of_pair(old_thing, new_thing) : thing_of_pair(change.old_element, change.new_element);
    things_.note(thing, place);
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
    ChangedThing& thing = thing_of_pair(came ? Element() : thing_itself, came ? thing_itself : Element());
    (came ? thing.came : thing.went) = true;
    things_.note(thing, place);
  }

  // Adds each thing in a list that came or went. False if there are none in it.
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

  ChangedThing& thing_of_pair(Element old_thing, Element new_thing) {
    uint32_t& place = places_.of(new_thing ? new_thing : old_thing);
    if (place == ChangedThing::kNone) {
      place = static_cast<uint32_t>(things_.list_.size());
      things_.list_.push_back({});
      things_.list_.back().new_thing = new_thing;
    }
    ChangedThing& thing = things_.list_[place];
    if (!thing.old_thing) thing.old_thing = old_thing;
    return thing;
  }

  ChangedThings& things_;
  ValuesOfElements<uint32_t> places_{ChangedThing::kNone};  // in the list of things
  CounterpartsByTree counterparts_;
};

ChangedThings::ChangedThings(const std::vector<Change>& changes) {
  Collector collector(*this);
  for (size_t i = 0; i < changes.size(); ++i) collector.add(changes[i], i);
  pair_replaced();
}

void ChangedThings::note(ChangedThing& thing, size_t change) {
  const auto place = static_cast<uint32_t>(notes_.size());
  notes_.push_back({static_cast<uint32_t>(change), ChangedThing::kNone});
  (thing.first_note == ChangedThing::kNone ? thing.first_note : notes_[thing.last_note].next) = place;
  thing.last_note = place;
}

// Appends the notes of `other` to those of the thing. Both have notes.
void ChangedThings::take_notes(ChangedThing& thing, const ChangedThing& other) {
  notes_[thing.last_note].next = other.first_note;
  thing.last_note = other.last_note;
}

// Among things of one kind below one element, the first that came replaced the first that went, and so on.
void ChangedThings::pair_replaced() {
  using Place = std::pair<const CatalogueFact*, std::string>;
  std::map<Place, std::vector<ChangedThing*>> went;
  const auto place_of = [](Element thing) { return Place(find_fact(thing), path_of(thing.parent())); };
  for (ChangedThing& thing : list_) {
    if (thing.went && is_replaceable(thing.old_thing)) went[place_of(thing.old_thing)].push_back(&thing);
  }
  if (went.empty()) return;
  for (auto& [place, gone] : went) std::reverse(gone.begin(), gone.end());
  for (ChangedThing& thing : list_) {
    if (!thing.came || !is_replaceable(thing.new_thing)) continue;
    const auto found = went.find(place_of(thing.new_thing));
    if (found == went.end() || found->second.empty()) continue;
    ChangedThing& gone = *found->second.back();
    found->second.pop_back();
    gone.successor = thing.new_thing;
    take_notes(gone, thing);
    thing.is_successor = true;
  }
}

bool is_replaceable(Element thing) {
  const CatalogueFact* fact = find_fact(thing);
  return fact && fact->wording.replaceable;
}

}  // namespace inv
