// The numbers that continue a list begun by another collector.
#pragma once

#include <initializer_list>
#include <string>
#include <unordered_set>

#include "zxml/zXML.h"

// The element below the top one that the names lead to, one inside the other; null when there is none.
const Tag* find_element(const InventoryTree& snapshot, std::initializer_list<const char*> names);

// The numbers that no element of a list has yet, in ascending order. The names are searched once, not once
// for each number.
class FreeNumbers {
 public:
  // The elements' names begin with `prefix`. A list that is not there has no number taken.
  FreeNumbers(const InventoryTree& snapshot, std::initializer_list<const char*> list, const char* prefix);

  // The name of the element with the next free number.
  std::string next_name();

 private:
  std::string prefix_;
  std::unordered_set<std::string> taken_;
  int number_ = 0;
};
