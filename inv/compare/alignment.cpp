#include "inv/compare/alignment.h"

#include <unordered_map>

namespace inv {
namespace {

using Places = std::vector<size_t>;

// Places of a list by key, each handed out once, the first one first.
class PlacesByKey {
 public:
  void add(uint64_t key, size_t place) { queues_[key].places.push_back(place); }

  size_t take(uint64_t key) {
    const auto found = queues_.find(key);
    if (found == queues_.end() || found->second.taken == found->second.places.size()) return kNoPartner;
    return found->second.places[found->second.taken++];
  }

 private:
  struct Queue {
    Places places;
    size_t taken = 0;
  };
  std::unordered_map<uint64_t, Queue> queues_;
};

Places pair_equal(const std::vector<uint64_t>& old_items, const std::vector<uint64_t>& new_items) {
  PlacesByKey waiting;
  for (size_t i = 0; i < new_items.size(); ++i) waiting.add(new_items[i], i);
  Places partners;
  for (const uint64_t item : old_items) partners.push_back(waiting.take(item));
  return partners;
}

// For each new item its partner, or kNoPartner.
Places inverted(const Places& partners, size_t size) {
  Places inverse(size, kNoPartner);
  for (size_t i = 0; i < partners.size(); ++i) {
    if (partners[i] != kNoPartner) inverse[partners[i]] = i;
  }
  return inverse;
}

// Unpaired items are identified by the last paired old item before them.
void pair_left_over(Places& partners, size_t new_size) {
  const Places old_of_new = inverted(partners, new_size);
  PlacesByKey left_over;
  size_t before = kNoPartner;
  for (size_t i = 0; i < new_size; ++i) {
    if (old_of_new[i] == kNoPartner) {
      left_over.add(before, i);
    } else {
      before = old_of_new[i];
    }
  }
  before = kNoPartner;
  for (size_t i = 0; i < partners.size(); ++i) {
    if (partners[i] == kNoPartner) {
      partners[i] = left_over.take(before);
    } else {
      before = i;
    }
  }
}

}  // namespace

std::vector<size_t> align(const std::vector<uint64_t>& old_items, const std::vector<uint64_t>& new_items) {
  Places partners = pair_equal(old_items, new_items);
  pair_left_over(partners, new_items.size());
  return partners;
}

}  // namespace inv
