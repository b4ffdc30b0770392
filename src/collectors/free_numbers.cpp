#include "collectors/free_numbers.h"

const Tag* find_element(const InventoryTree& snapshot, std::initializer_list<const char*> names) {
  const Tag* element = &snapshot.top();
  for (const char* name : names) {
    if (element) element = element->find_child(name);
  }
  return element;
}

FreeNumbers::FreeNumbers(const InventoryTree& snapshot, std::initializer_list<const char*> list,
                         const char* prefix)
    : prefix_(prefix) {
  const Tag* elements = find_element(snapshot, list);
  if (!elements) return;
  for (const auto& element : elements->children()) taken_.insert(element->name());
}

std::string FreeNumbers::next_name() {
  for (;;) {
    std::string name = prefix_ + std::to_string(++number_);
    if (taken_.count(name) == 0) return name;
  }
}
