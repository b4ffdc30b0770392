// Which item of one list became which of another, when nothing but their contents tells.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace inv {

constexpr size_t kNoPartner = static_cast<size_t>(-1);

// For each old item the place of the new one that it became, or kNoPartner. Equal items belong together, the
// first with the first, wherever they are. What is left over changed into what is left over at the same
// place, behind the same equal item: A, B, C and A, X, C are one change, A, B, C and B, C are one item less.
// The time it takes grows with the number of items only.
std::vector<size_t> align(const std::vector<uint64_t>& old_items, const std::vector<uint64_t>& new_items);

}  // namespace inv
