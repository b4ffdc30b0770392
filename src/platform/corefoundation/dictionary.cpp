#include <algorithm>
#include <numeric>
#include <vector>

#include "platform/corefoundation/container.h"
#include "platform/corefoundation/string.h"

namespace cf {
namespace {

// Up to this many keys are compared one by one; for more there is a sorted index after the values.
constexpr size_t kMostUnsorted = 16;

std::string_view key_text(const void* key) { return text_of(static_cast<CFStringRef>(key)); }

// The index's order: whatever is cheapest to compare.
bool less(std::string_view left, std::string_view right) {
  return left.size() != right.size() ? left.size() < right.size() : left < right;
}

uint32_t* index_of(CFDictionaryRef dictionary) {
  return reinterpret_cast<uint32_t*>(const_cast<const void**>(values_of(dictionary) + dictionary->count));
}

// Positions in the order of the keys; equal keys in the order of the document.
std::vector<uint32_t> sorted_positions(const Pair* pairs, size_t count) {
  std::vector<uint32_t> positions(count);
  std::iota(positions.begin(), positions.end(), 0u);
  std::sort(positions.begin(), positions.end(), [pairs](uint32_t left, uint32_t right) {
    const std::string_view left_key = key_text(pairs[left].key), right_key = key_text(pairs[right].key);
    return left_key == right_key ? left < right : less(left_key, right_key);
  });
  return positions;
}

// Gives the first pair of a key the later one's value, and marks the later one for removal.
void merge(Pair& first, Pair& later) {
  std::swap(first.value, later.value);
  CFRelease(later.key);
  CFRelease(later.value);
  later.key = nullptr;
}

size_t remove_merged(Pair* pairs, size_t count) {
  return static_cast<size_t>(
      std::remove_if(pairs, pairs + count, [](const Pair& pair) { return !pair.key; }) - pairs);
}

size_t merge_few(Pair* pairs, size_t count) {
  bool merged = false;
  for (size_t later = 1; later < count; ++later) {
    for (size_t first = 0; first < later; ++first) {
      if (!pairs[first].key || key_text(pairs[first].key) != key_text(pairs[later].key)) continue;
      merge(pairs[first], pairs[later]);
      merged = true;
      break;
    }
  }
  return merged ? remove_merged(pairs, count) : count;
}

size_t merge_many(Pair* pairs, const std::vector<uint32_t>& positions) {
  bool merged = false;
  Pair* first = &pairs[positions[0]];
  for (size_t i = 1; i < positions.size(); ++i) {
    Pair& later = pairs[positions[i]];
    if (key_text(first->key) == key_text(later.key)) {
      merge(*first, later);
      merged = true;
    } else {
      first = &later;
    }
  }
  return merged ? remove_merged(pairs, positions.size()) : positions.size();
}

CFDictionaryObject* fill(const Pair* pairs, size_t count, size_t index_size) {
  auto* const dictionary =
      create_with_tail<CFDictionaryObject>(count * 2 * sizeof(void*) + index_size * sizeof(uint32_t), count);
  const void** const keys = tail_of<const void*>(dictionary);
  for (size_t i = 0; i < count; ++i) {
    keys[i] = pairs[i].key;
    keys[count + i] = pairs[i].value;
  }
  return dictionary;
}

// The key's position; the number of pairs when it is not there.
size_t find(CFDictionaryRef dictionary, const void* key) {
  const std::string_view wanted = key_text(key);
  const void* const* const keys = keys_of(dictionary);
  const size_t count = dictionary->count;
  if (count <= kMostUnsorted) {
    return static_cast<size_t>(std::find_if(keys, keys + count,
                                            [key, wanted](const void* candidate) {
                                              return candidate == key || key_text(candidate) == wanted;
                                            }) -
                               keys);
  }
  const uint32_t* const index = index_of(dictionary);
  const uint32_t* const place = std::lower_bound(
      index, index + count, wanted,
      [keys](uint32_t position, std::string_view text) { return less(key_text(keys[position]), text); });
  return place != index + count && key_text(keys[*place]) == wanted ? *place : count;
}

}  // namespace

CFDictionaryRef create_dictionary(Pair* pairs, size_t count) {
  if (count <= kMostUnsorted) return fill(pairs, merge_few(pairs, count), 0);
  std::vector<uint32_t> positions = sorted_positions(pairs, count);
  const size_t distinct = merge_many(pairs, positions);
  if (distinct <= kMostUnsorted) return fill(pairs, distinct, 0);
  if (distinct < count) positions = sorted_positions(pairs, distinct);
  CFDictionaryObject* const dictionary = fill(pairs, distinct, distinct);
  std::copy(positions.begin(), positions.end(), index_of(dictionary));
  return dictionary;
}

}  // namespace cf

const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks = {0};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks = {0};

CFTypeID CFDictionaryGetTypeID() { return static_cast<CFTypeID>(cf::Kind::dictionary); }

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef, const void** keys, const void** values, CFIndex count,
                                   const CFDictionaryKeyCallBacks*, const CFDictionaryValueCallBacks*) {
  std::vector<cf::Pair> pairs;
  for (CFIndex i = 0; i < count; ++i) pairs.push_back({CFRetain(keys[i]), CFRetain(values[i])});
  return cf::create_dictionary(pairs.data(), pairs.size());
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) { return static_cast<CFIndex>(dictionary->count); }

Boolean CFDictionaryContainsKey(CFDictionaryRef dictionary, const void* key) {
  return cf::find(dictionary, key) < dictionary->count;
}

Boolean CFDictionaryGetValueIfPresent(CFDictionaryRef dictionary, const void* key, const void** value) {
  const size_t position = cf::find(dictionary, key);
  if (position == dictionary->count) return false;
  if (value) *value = cf::values_of(dictionary)[position];
  return true;
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
  const void* value = nullptr;
  CFDictionaryGetValueIfPresent(dictionary, key, &value);
  return value;
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys, const void** values) {
  if (keys) std::copy_n(cf::keys_of(dictionary), dictionary->count, keys);
  if (values) std::copy_n(cf::values_of(dictionary), dictionary->count, values);
}
