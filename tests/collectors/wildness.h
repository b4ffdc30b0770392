// Chance that is the same in every run, for trees that no Mac would have.
#pragma once

#include <iterator>
#include <random>
#include <string>

#include "zxml/value.h"

class Wildness {
 public:
  explicit Wildness(unsigned seed) : random_(seed) {}

  // From 0 on.
  int number_below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }

  template <typename Elements>
  auto one_of(const Elements& elements) {
    return *std::next(std::begin(elements), number_below(static_cast<int>(std::size(elements))));
  }

  // The name of one of the first elements of a list, as the end of a path.
  std::string item() { return "/item" + std::to_string(number_below(3)); }

  // One of the numbers or, more often, of the texts.
  template <typename Numbers, typename Texts>
  Value value_of(const Numbers& numbers, const Texts& texts) {
    Value value(one_of(numbers));
    if (number_below(4) > 0) value.set_string(one_of(texts));
    return value;
  }

 private:
  std::mt19937 random_;
};
