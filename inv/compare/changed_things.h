// Which things changed, and by which changes.
#pragma once

#include <cstdint>
#include <vector>

#include "inv/compare/diff.h"

namespace inv {

// A thing that changed. One of the two may be missing.
struct ChangedThing {
  static constexpr uint32_t kNone = static_cast<uint32_t>(-1);

  Element old_thing;
  Element new_thing;
  Element successor;  // what replaced the old one
  uint32_t first_note = kNone;
  uint32_t last_note = kNone;
  bool came = false;
  bool went = false;
  bool is_successor = false;  // of another thing, which has all of its changes

  Element any() const { return new_thing ? new_thing : old_thing; }
};

// Whether things of this kind, where one went and another came, replace each other: disks, displays.
bool is_replaceable(Element thing);

class ChangedThings {
 public:
  // Groups the changes by thing; details belong to the thing of their element. An element that belongs to no
  // thing counts as one. If a whole list came or went, so did each thing in it.
  explicit ChangedThings(const std::vector<Change>& changes);

  const std::vector<ChangedThing>& list() const { return list_; }

  // Calls visit(place of a change) for each change of a thing.
  template <typename Visit>
  void each_change(const ChangedThing& thing, Visit visit) const {
    for (uint32_t place = thing.first_note;; place = notes_[place].next) {
      visit(size_t{notes_[place].change});
      if (place == thing.last_note) return;
    }
  }

 private:
  // The changes of a thing, as a linked list: a vector for each of millions of things would take more memory
  // than their text.
  struct Note {
    uint32_t change;
    uint32_t next;
  };
  class Collector;

  void note(ChangedThing& thing, size_t change);
  void take_notes(ChangedThing& thing, const ChangedThing& other);
  void pair_replaced();

  std::vector<ChangedThing> list_;
  std::vector<Note> notes_;
};

}  // namespace inv
