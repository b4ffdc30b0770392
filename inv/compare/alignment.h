// Pairs the items of two lists that nothing but their contents identifies.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace inv {

constexpr size_t kNoPartner = static_cast<size_t>(-1);

// For each old item the place of the new one that it became, or kNoPartner. Equal items are paired in order,
// wherever they are. An unpaired item changed into the unpaired one at the same place, after the same equal
// item: A, B, C and A, X, C are one change, A, B, C and B, C are one item less. Takes linear time.
std::vector<size_t> align(const std::vector<uint64_t>& old_items, const std::vector<uint64_t>& new_items);

}  // namespace inv
